// Lists of all objects of a kind.

import { type Child, h } from "../elements/dom";
import {
  badge, capitalized, codeBlock, type Column, description, objectLink, ownerNames, placedLink, section, settingsInShort, table,
  titled,
} from "../elements/parts";
import { count, counted, nameElement, plainName } from "../elements/text";
import { type Kind, kMeasureKinds, type Model } from "../model/model";
import type { App, Page } from "./page";

const kMostFound = 2000;

function listPage(title: string, subtitle: string, ...content: Child[]): Page {
  return {
    title,
    element: h("article", {}, h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, title),
      h("p", { class: "subtitle" }, subtitle)), content),
  };
}

export function kindPage({ model }: App, kind: Kind): Page {
  return objectsPage(model, model.ofKind(kind), capitalized(model.kindWords(kind)!.many));
}

export function measuresPage({ model }: App): Page {
  return objectsPage(model, model.ofKind(...kMeasureKinds), "Measures");
}

function objectsPage(model: Model, ids: number[], title: string): Page {
  const columns: Column<number>[] = [
    { title: "Name", sort: (id) => model.name(id), cell: (id) => [objectLink(model, id), description(model, id)] },
    { title: "In", cell: (id) => ownerNames(model, model.owners(id)) },
  ];
  if (ids.some((id) => model.node(id).e)) columns.push({ title: "Expression", class: "wide", cell: (id) => {
    const { e, l } = model.node(id);
    return e && codeBlock(e, l, 3);
  } });
  if (ids.some((id) => model.node(id).t)) columns.push({ title: "Type", sort: (id) => model.node(id).t ?? "", cell: (id) => model.node(id).t });
  if (ids.every((id) => model.isInDetailsOnly(id)) && ids.some((id) => model.node(id).s))
    columns.push({ title: "Settings", cell: (id) => settingsInShort(model, id) });
  return listPage(title, `${count(ids.length)} in the model`, h("section", { class: "panel", "aria-label": title },
    table({ label: title, rows: ids, columns, filterText: (id) => `${model.name(id)} ${model.node(id).p ?? ""}` })));
}

export function cubesPage({ model }: App): Page {
  const ids = model.ofKind("cube");
  return listPage("Cubes", `${count(ids.length)} in the model`, h("div", { class: "cards" }, ids.map((id) =>
    h("section", { class: "panel" }, h("h2", {}, objectLink(model, id)), description(model, id),
      h("p", { class: "note" }, [
        counted(model.measuresOf(id).length, "measure"),
        counted(model.partsOfKind(id, "kpi").length, "KPI"),
        counted(model.partsOfKind(id, "cubeDimension").length, "dimension")].join(" · "))))));
}

export function dimensionsPage({ model }: App): Page {
  const ids = model.ofKind("dimension");
  return listPage("Dimensions", `${count(ids.length)} in the model`, h("section", { class: "panel", "aria-label": "Dimensions" },
    table({
      label: "dimensions", rows: ids, filterText: (id) => model.name(id),
      columns: [
        { title: "Dimension", sort: (id) => model.name(id), cell: (id) => [objectLink(model, id), description(model, id)] },
        { title: "Attributes", class: "figure", sort: (id) => model.partsOfKind(id, "attribute").length,
          cell: (id) => count(model.partsOfKind(id, "attribute").length) },
        { title: "Hierarchies", cell: (id) => h("ul", { class: "plain" }, model.hierarchies(id).map((hierarchy) =>
          h("li", {}, nameElement(hierarchy.n), " ", h("span", { class: "place" }, `${count(hierarchy.l.length)} levels`)))) },
      ],
    })));
}

function viewTables(model: Model, title: Child, ids: number[]): HTMLElement {
  return section(title, table({
    label: "tables", rows: ids, filterText: (id) => `${model.name(id)} ${model.node(id).q ?? ""}`,
    columns: [
      { title: "Table", sort: (id) => model.name(id), cell: (id) => [objectLink(model, id), description(model, id)] },
      { title: "Kind", cell: (id) => model.kind(id) === "namedQuery" && badge(model.kindLabel(id)) },
      { title: "Qualified name", cell: (id) => model.node(id).q && h("code", {}, nameElement(model.node(id).q!)) },
      { title: "Columns", class: "figure", sort: (id) => model.parts(id).length, cell: (id) => count(model.parts(id).length) },
    ],
  }));
}

export function tablesPage({ model }: App): Page {
  const byView = new Map<string, number[]>();
  for (const id of model.ofKind("viewTable", "namedQuery")) {
    const view = model.node(id).v ?? "";
    const list = byView.get(view);
    if (list) list.push(id);
    else byView.set(view, [id]);
  }
  const database = model.ofKind("databaseTable");
  return listPage("Tables and queries",
    "Tables and named queries of the data source views, and the database tables behind them",
    Array.from(byView, ([view, ids]) => viewTables(model, [nameElement(view || "Data source view"), " ",
      h("span", { class: "number" }, count(ids.length))], ids)),
    database.length > 0 && viewTables(model, titled("Database tables", database.length), database));
}

export function searchPage({ model, search }: App, query: string): Page {
  const found = search().find(query, kMostFound);
  const left = found.total - found.ids.length;
  const shown = left > 0 ? `, showing the best ${count(kMostFound)}` : "";
  return listPage("Search", `${counted(found.total, "object")} for “${plainName(query)}”${shown}`,
    h("section", { class: "panel", "aria-label": "Search results" }, table({
      label: "search results", rows: found.ids,
      columns: [
        { title: "Name", cell: (id) => placedLink(model, id) },
        { title: "Path", class: "wide", cell: (id) => model.node(id).p && h("code", {}, nameElement(model.node(id).p!)) },
      ],
    })));
}
