// The database at a glance.

import { type Child, h } from "../elements/dom";
import { kindMark } from "../elements/kind_mark";
import { badge, coverageBar, description, facts, objectLink, section, table, titled } from "../elements/parts";
import { count, nameElement } from "../elements/text";
import type { CoverageFigures, Kind, Model } from "../model/model";
import { kMeasureKinds } from "../model/model";
import { openNamesTable } from "./findings";
import type { App, Page } from "./page";

interface Stage {
  title: string;
  href: string;
  counts: [kinds: Kind[], one: string, many: string, href?: string][];
}

/** The way of the data, from the database to what people see. */
const kStages: Stage[] = [
  { title: "Databases", href: "#/tables", counts: [[["databaseTable"], "table", "tables"],
    [["databaseColumn"], "column", "columns"]] },
  { title: "Data source views", href: "#/tables", counts: [[["viewTable"], "table", "tables"],
    [["namedQuery"], "named query", "named queries"], [["computedColumn"], "computed column", "computed columns"]] },
  { title: "Dimensions", href: "#/dimensions", counts: [[["dimension"], "dimension", "dimensions"],
    [["attribute"], "attribute", "attributes"]] },
  { title: "Measures", href: "#/measures", counts: [[kMeasureKinds, "measure", "measures", "#/measures"],
    [["calculatedMeasure"], "of them calculated", "of them calculated"], [["kpi"], "KPI", "KPIs"]] },
  { title: "Cubes", href: "#/cubes", counts: [[["cube"], "cube", "cubes"], [["perspective"], "perspective", "perspectives"]] },
];

const kFewUnresolved = 6;

function flow(model: Model): HTMLElement {
  return h("ol", { class: "stages", "aria-label": "From the databases to the cubes" }, kStages.map((stage) => {
    const empty = model.ofKind(...stage.counts.flatMap(([kinds]) => kinds)).length === 0;
    return h("li", {}, h("h2", {}, kindMark(stage.counts[0]![0][0]!), h("a", { href: stage.href }, stage.title)),
      h("ul", {}, stage.counts.map(([kinds, one, many, href], i) => {
        const number = model.ofKind(...kinds).length;
        return (number > 0 || (i === 0 && empty)) && h("li", {},
          h("a", { href: href ?? `#/kind/${kinds[0]}` }, h("strong", {}, count(number)), " ", number === 1 ? one : many));
      })));
  }));
}

function cubes(model: Model): Child {
  const ids = model.ofKind("cube");
  if (ids.length === 0) return null;
  return section(titled("Cubes", ids.length), table({
    label: "cubes", rows: ids, filterText: (id) => model.name(id),
    columns: [
      { title: "Cube", cell: (id) => [objectLink(model, id), description(model, id)] },
      { title: "Measures", class: "figure", cell: (id) => count(model.measuresOf(id).length) },
      { title: "KPIs", class: "figure", cell: (id) => count(model.partsOfKind(id, "kpi").length) },
      { title: "Dimensions", class: "figure", cell: (id) => count(model.partsOfKind(id, "cubeDimension").length) },
    ],
  }));
}

function coverage(model: Model): Child {
  const { data } = model;
  if (data.coverage.length === 0) return null;
  const whole = data.coverage.find((row) => row.n < 0);
  const perCube = data.coverage.filter((row) => row.n >= 0);
  return section(h("a", { href: "#/coverage" }, "Traced back to a database column"),
    whole && [coverageBar("Attributes", whole.a), coverageBar("Measures", whole.m),
      whole.k[0] > 0 && coverageBar("KPI values", whole.k)],
    perCube.length > 1 && h("div", { class: "coverage-by-cube" }, perCube.slice(0, 12).map((row) =>
      coverageBar(model.name(row.n), row.a.map((figure, i) => figure + row.m[i]! + row.k[i]!) as CoverageFigures))));
}

function dataSources(model: Model): Child {
  const sources = model.data.dataSources;
  if (sources.length === 0) return null;
  return section(titled("Data sources", sources.length), h("div", { class: "cards" }, sources.map((source) =>
    h("div", { class: "card" }, h("h3", {}, nameElement(source.n)), facts([
      ["Server", source.s && nameElement(source.s)],
      ["Database", source.d && nameElement(source.d)],
      ["Connection", source.c && h("code", { class: "connection" }, nameElement(source.c))],
    ])))));
}

function unresolved(model: Model): Child {
  const ids = model.withOpenNames("mistake");
  if (ids.length === 0)
    return section("Unresolved references", h("p", { class: "note" }, "All references are resolved."));
  return section(h("a", { href: "#/unresolved" }, titled("Unresolved references", ids.length)),
    openNamesTable(model, "unresolved references", ids.slice(0, kFewUnresolved), ["mistake"]),
    ids.length > kFewUnresolved && h("p", {}, h("a", { href: "#/unresolved" }, `All ${count(ids.length)} expressions`)));
}

/** What no answer here tells of. */
function passedOver(model: Model): Child {
  const { passedOver: rows } = model.data;
  if (!rows) return section("Details", h("p", { class: "note" }, "No details in this document: it was imported without them. ",
    "Keys, usages of dimensions, roles, sets, scripts and settings are not known."));
  if (rows.length === 0) return null;
  return section("Passed over", h("ul", { class: "plain" }, rows.map(([what, number, hasMeaning]) =>
    h("li", {}, `${what}: ${count(number)}`, hasMeaning === 1 && badge("could change an answer", "bad")))));
}

export function overviewPage({ model }: App): Page {
  const { data } = model;
  return {
    title: "Overview",
    element: h("article", { class: "overview" },
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, nameElement(data.database)),
        h("p", { class: "subtitle" }, data.dialect === "tabular" ? "Tabular model" : "Multidimensional database",
          data.source !== "" && [", read from ", h("span", { class: "file" }, nameElement(data.source))], " by ", data.program)),
      flow(model),
      h("div", { class: "two-columns wide-left" },
        h("div", {}, cubes(model), dataSources(model)),
        h("div", {}, coverage(model), unresolved(model),
          passedOver(model),
          section("Totals", h("div", { class: "figures" },
            facts(data.counts.map(([label, number]) => [label, count(number)]))))))),
  };
}
