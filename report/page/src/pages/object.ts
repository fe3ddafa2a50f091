// The page of one object.

import { type Child, fragment, h } from "../elements/dom";
import { kindMark } from "../elements/kind_mark";
import {
  aggregation, badge, codeBlock, codeTitle, type Column, description, edgeBadge, facts, objectLink, placedLink, section,
  table, titled,
} from "../elements/parts";
import { count, counted, nameElement, percent, plainName } from "../elements/text";
import { LineagePanel } from "../lineage/panel";
import { kKinds } from "../model/kinds";
import type { Edge, Kind, Model } from "../model/model";
import { cubeSections } from "./cube";
import type { App, Page } from "./page";

const kLongProperty = 200;

function breadcrumbs(model: Model, id: number): HTMLElement {
  return h("nav", { class: "breadcrumbs", "aria-label": "Breadcrumb" }, h("ol", {},
    h("li", {}, h("a", { href: "#/" }, nameElement(model.data.database))),
    model.owners(id).map((owner) => h("li", {}, h("a", { href: model.href(owner) }, nameElement(model.name(owner)))))));
}

function badges(model: Model, id: number): Child {
  const node = model.node(id);
  return [
    node.h === 1 && badge("hidden"),
    node.r === 1 && badge("traces back to a column", "good"),
    node.r === 2 && badge("traces back to a column, as found by the graph", "good"),
    node.r === 0 && badge("does not reach a column", "bad"),
    node.u && node.u.length > 0 && badge(counted(node.u.length, "unresolved reference"), "bad"),
  ];
}

/** Some properties are whole documents. */
function property(value: string): HTMLElement {
  return value.length > kLongProperty ? codeBlock(value, undefined, 3) : nameElement(value);
}

function factList(model: Model, id: number): HTMLElement {
  const node = model.node(id);
  const original = model.original(id);
  return facts([
    ["Kind", kKinds[model.kind(id)].one],
    ["Copy of", original !== id && placedLink(model, original)],
    ["Qualified name", node.q && h("code", {}, nameElement(node.q))],
    ["Path", node.p && h("code", {}, nameElement(node.p))],
    ["Data source view", node.v && nameElement(node.v)],
    ["Type", node.t],
    ["Aggregation", aggregation(model, id)],
    ["Lineage gap", node.w],
    ["Unresolved references", node.u && node.u.length > 0 && h("ul", { class: "plain" },
      node.u.map((name) => h("li", {}, h("code", {}, nameElement(name)))))],
    ...Object.entries(node.x ?? {}).map(([key, value]): [string, Child] => [plainName(key), property(value)]),
  ]);
}

function expression(model: Model, id: number): Child {
  const { e, l } = model.node(model.original(id));
  return e && section(codeTitle(l), codeBlock(e, l, 8));
}

/** What stands right beside an object along the lineage. */
function besides(model: Model, title: string, edges: Edge[], end: "from" | "to"): Child {
  if (edges.length === 0) return null;
  return section(titled(title, edges.length), table({
    label: title, rows: edges, filterText: (edge) => model.name(edge[end]),
    columns: [
      { title: "Object", cell: (edge) => placedLink(model, edge[end]) },
      { title: "How", class: "narrow", cell: (edge) => edgeBadge(edge.kind, edge.found) },
    ],
  }));
}

function sourcesOf(model: Model, id: number): Child {
  return [
    besides(model, "Sources", model.edgesInto(id), "from"),
    besides(model, "Dependents", model.edgesOutOf(id), "to"),
  ];
}

function hierarchies(model: Model, id: number): Child {
  const list = model.hierarchies(id);
  if (list.length === 0) return null;
  return section(titled("Hierarchies", list.length), h("ul", { class: "plain hierarchies" }, list.map((hierarchy) =>
    h("li", {}, h("h3", {}, nameElement(hierarchy.n)), h("ol", { class: "levels" }, hierarchy.l.map(([name, attribute]) =>
      h("li", {}, attribute < 0 ? nameElement(name) : h("a", { href: model.href(attribute) }, nameElement(name)))))))));
}

/** The parts of an object, a table for each kind. */
function parts(model: Model, id: number): Child {
  const byKind = new Map<Kind, number[]>();
  for (const part of model.parts(id)) {
    const list = byKind.get(model.kind(part));
    if (list) list.push(part);
    else byKind.set(model.kind(part), [part]);
  }
  return Array.from(byKind, ([kind, ids]) => {
    const title = kKinds[kind].many[0]!.toUpperCase() + kKinds[kind].many.slice(1);
    return section(titled(title, ids.length), table({
      label: kKinds[kind].many, rows: ids, columns: partColumns(model, ids),
      filterText: (part) => `${model.name(part)} ${model.node(part).d ?? ""}`,
    }));
  });
}

function partColumns(model: Model, ids: number[]): Column<number>[] {
  const has = (test: (id: number) => unknown): boolean => ids.some((id) => Boolean(test(id)));
  const columns: Column<number>[] = [{ title: "Name", cell: (id) => [objectLink(model, id),
    model.node(id).h === 1 && badge("hidden"), model.node(id).r === 0 && badge("no column", "bad"), description(model, id)] }];
  if (has((id) => model.node(id).e)) columns.push({ title: "Expression", class: "wide", cell: (id) => {
    const { e, l } = model.node(id);
    return e && codeBlock(e, l, 3);
  } });
  if (has((id) => model.node(id).a)) columns.push({ title: "Aggregation", cell: (id) => aggregation(model, id) });
  if (has((id) => model.node(id).t)) columns.push({ title: "Type", cell: (id) => model.node(id).t });
  columns.push({ title: "Used by", class: "figure", cell: (id) => count(model.edgesOutOf(id).length + model.parts(id).length) });
  return columns;
}

function coverageNote(model: Model, id: number): Child {
  const row = model.data.coverage.find((candidate) => candidate.n === id);
  return row && h("p", { class: "subtitle" },
    `Trace back to a database column: ${percent(row.a[1], row.a[0])} of ${counted(row.a[0], "attribute")}, ` +
    `${percent(row.m[1], row.m[0])} of ${counted(row.m[0], "measure")}`);
}

export function objectPage(app: App, id: number): Page {
  const { model } = app;
  const node = model.node(id);
  const kind = model.kind(id);
  const panel = new LineagePanel(model, id, app.open);
  const head = h("header", { class: "page-head" }, breadcrumbs(model, id),
    h("div", { class: "title" },
      h("h1", { tabindex: "-1" }, kindMark(kind), h("span", { class: "unseen" }, kKinds[kind].one + " "), nameElement(node.n)),
      h("p", { class: "badges" }, badge(kKinds[kind].one), badges(model, id))),
    coverageNote(model, id),
    node.d && h("p", { class: "lead" }, nameElement(node.d)));
  const about = section("About", factList(model, id));
  const body = kind === "cube"
    ? fragment(cubeSections(model, id), panel.element, about)
    : fragment(expression(model, id), panel.element, h("div", { class: "two-columns" },
      h("div", {}, about, hierarchies(model, id), parts(model, id)), h("div", {}, sourcesOf(model, id))));
  return {
    title: plainName(node.n),
    element: h("article", { class: "object-page" }, head, body),
    attached: () => panel.attached(),
    detached: () => panel.detached(),
  };
}
