// What a model leaves open: unresolved names, and objects that do not trace back to a column.

import { h } from "../elements/dom";
import {
  codeBlock, coverageBar, type Column, objectLink, placedLink, section, table, titled,
} from "../elements/parts";
import { counted } from "../elements/text";
import type { Model, OpenNameState } from "../model/model";
import { openNames } from "./open_names";
import type { App, Page } from "./page";

export function openNamesTable(model: Model, label: string, ids: number[], states: OpenNameState[], withText = false): HTMLElement {
  const columns: Column<number>[] = [
    { title: "Object", cell: (id) => placedLink(model, id) },
    { title: "Name", cell: (id) => openNames(model, id, ...states) },
  ];
  if (withText) columns.push({ title: "Expression", class: "wide", cell: (id) => {
    const { e, l } = model.node(id);
    return e && codeBlock(e, l, 3);
  } });
  return table({
    label, rows: ids, columns,
    filterText: (id) => `${model.name(id)} ${model.node(id).p ?? ""} ${model.openNames(id, ...states).flat().join(" ")}`,
  });
}

export function unresolvedPage({ model }: App): Page {
  const ids = model.withOpenNames("mistake");
  const others = model.withOpenNames("exists", "beyond");
  return {
    title: "Unresolved references",
    element: h("article", {},
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, titled("Unresolved references", ids.length)),
        h("p", { class: "subtitle" },
          "Expressions that refer to names not found in the model. Their other references are still followed.")),
      ids.length === 0 ? h("p", { class: "note" }, "All references are resolved.")
        : h("section", { class: "panel", "aria-label": "Unresolved references" }, openNamesTable(model, "unresolved references", ids, ["mistake"], true)),
      others.length > 0 && section(titled("Names that lead elsewhere", others.length),
        h("p", { class: "note" }, "They exist, but are no attributes or measures, or stand for something outside this definition."),
        openNamesTable(model, "names that lead elsewhere", others, ["exists", "beyond"], true))),
  };
}

function withoutColumn(model: Model, ids: number[]): number[] {
  return ids.filter((id) => model.node(id).r === 0);
}

export function coveragePage({ model }: App): Page {
  const open = withoutColumn(model, model.data.nodes.map((_, id) => id));
  return {
    title: "Coverage",
    element: h("article", {},
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, "Coverage"),
        h("p", { class: "subtitle" }, "How many attributes and measures trace back to a database column.")),
      h("div", { class: "cards" }, model.data.coverage.map((row) => h("section", { class: "panel" },
        h("h2", {}, row.n < 0 ? "Total" : objectLink(model, row.n)),
        coverageBar("Attributes", row.a), coverageBar("Measures", row.m), row.k[0] > 0 && coverageBar("KPI values", row.k),
        row.m[2] > 0 && h("p", { class: "note" },
          `Included: ${counted(row.m[2], "row count")}.`)))),
      open.length > 0 && section(titled("Not traced back to a column", open.length), table({
        label: "objects not traced back to a column", rows: open,
        filterText: (id) => `${model.name(id)} ${model.node(id).p ?? ""}`,
        columns: [
          { title: "Object", cell: (id) => placedLink(model, id) },
          { title: "Reason", class: "wide", cell: (id) => model.node(id).w ?? "" },
        ],
      }))),
  };
}
