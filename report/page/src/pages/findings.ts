// What a model leaves open: names that mean nothing, and objects that lead to no column.

import { h } from "../dom";
import type { Model } from "../model";
import { codeBlock, coverageBar, type Column, objectLink, placedLink, section, table, titled } from "../parts";
import { counted, nameElement } from "../text";
import { unresolvedIds } from "./overview";
import type { App, Page } from "./page";

export function unresolvedTable(model: Model, ids: number[], withText = false): HTMLElement {
  const columns: Column<number>[] = [
    { title: "Object", cell: (id) => placedLink(model, id) },
    { title: "Not found", cell: (id) => h("ul", { class: "plain" },
      (model.node(id).u ?? []).map((name) => h("li", {}, h("code", {}, nameElement(name))))) },
  ];
  if (withText) columns.push({ title: "Expression", class: "wide", cell: (id) => {
    const { e, l } = model.node(id);
    return e && codeBlock(e, l, 3);
  } });
  return table({
    label: "unresolved references", rows: ids, columns,
    filterText: (id) => `${model.name(id)} ${model.node(id).p ?? ""} ${(model.node(id).u ?? []).join(" ")}`,
  });
}

export function unresolvedPage({ model }: App): Page {
  const ids = unresolvedIds(model);
  return {
    title: "Unresolved references",
    element: h("article", {},
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, titled("Unresolved references", ids.length)),
        h("p", { class: "subtitle" }, "Expressions with names that mean nothing in the model. ",
          "What else an expression names is followed all the same.")),
      ids.length === 0 ? h("p", { class: "note" }, "Every name in every expression was found.")
        : h("section", { class: "panel", "aria-label": "All of them" }, unresolvedTable(model, ids, true))),
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
        h("p", { class: "subtitle" }, "How many attributes and measures lead back to a column of a database. ",
          h("span", { class: "swatch by-model" }), " as the model has it, ",
          h("span", { class: "swatch by-graph" }), " found by the graph: through the name that a cube gives a dimension, or a linked measure group.")),
      h("div", { class: "cards" }, model.data.coverage.map((row) => h("section", { class: "panel" },
        h("h2", {}, row.n < 0 ? "Whole database" : objectLink(model, row.n)),
        coverageBar("Attributes", row.a[0], row.a[1], row.a[2]), coverageBar("Measures", row.m[0], row.m[1], row.m[2]),
        row.m[3] > 0 && h("p", { class: "note" },
          `${counted(row.m[3], "measure")} of these count rows.`)))),
      open.length > 0 && section(titled("Leading to no column", open.length), table({
        label: "objects that lead to no column", rows: open,
        filterText: (id) => `${model.name(id)} ${model.node(id).p ?? ""}`,
        columns: [
          { title: "Object", cell: (id) => placedLink(model, id) },
          { title: "Why", class: "wide", cell: (id) => model.node(id).w ?? "" },
        ],
      }))),
  };
}
