// What a cube shows: its measures with what defines them, KPIs, dimensions, perspectives.

import { type Child, h } from "../elements/dom";
import { aggregation, badge, codeBlock, objectLink, section, settingsInShort, table, titled } from "../elements/parts";
import { count, nameElement } from "../elements/text";
import type { Model } from "../model/model";
import { scripts } from "./script";
import { usageMatrix } from "./usage_matrix";

/** Few enough that what follows is not far away. */
const kFirstRows = 20;

function measures(model: Model, cube: number): Child {
  const ids = model.measuresOf(cube);
  if (ids.length === 0) return null;
  return section(titled("Measures", ids.length), table({
    label: "measures", rows: ids, firstRows: kFirstRows,
    filterText: (id) => `${model.name(id)} ${homeName(model, id)}`,
    columns: [
      { title: "Measure", cell: (id) => [objectLink(model, id), model.node(id).h === 1 && badge("hidden"),
        model.node(model.original(id)).r === 0 && badge("no column", "bad"), descriptionOf(model, id)] },
      { title: "Defined in", cell: (id) => home(model, id) },
      { title: "Definition", class: "wide", cell: (id) => definition(model, model.original(id)) },
      ...kLookedFor.filter(([, name]) => ids.some((id) => settingOf(model, id, name))).map(([title, name]) => ({
        title, cell: (id: number) => nameElement(settingOf(model, id, name) ?? ""),
      })),
    ],
  }));
}

/** What people look for beside a measure. */
const kLookedFor: [title: string, setting: string][] = [["Format", "FormatString"], ["Folder", "DisplayFolder"]];

function settingOf(model: Model, id: number, name: string): string | undefined {
  return model.setting(id, name) ?? model.setting(model.original(id), name);
}

function homeName(model: Model, id: number): string {
  const owner = model.node(model.original(id)).o;
  return owner === undefined ? "" : model.name(owner);
}

function home(model: Model, id: number): Child {
  const original = model.original(id);
  const owner = model.node(original).o;
  return original !== id && owner !== undefined && objectLink(model, owner);
}

function descriptionOf(model: Model, id: number): Child {
  const text = model.node(id).d ?? model.node(model.original(id)).d;
  return text && h("p", { class: "description" }, nameElement(text));
}

/** How a measure comes about: by its expression, or by aggregating a column. */
function definition(model: Model, id: number): Child {
  const { e, l } = model.node(id);
  const how = aggregation(model, id);
  const sources = model.edgesInto(id).filter((edge) => edge.kind === "aggregated" || edge.kind === "direct");
  const verb = how && (how === "None" ? "Not aggregated: " : `${how} of `);
  const column = (how || !e) && sources.length > 0 && h("span", { class: "aggregation" }, verb,
    sources.slice(0, 3).map((edge, i) => [i > 0 && ", ", objectLink(model, edge.from)]));
  return [column || (!e && h("span", { class: "aggregation" }, how)), e && codeBlock(e, l, 3)];
}

function kpis(model: Model, cube: number): Child {
  const ids = model.partsOfKind(cube, "kpi");
  if (ids.length === 0) return null;
  return section(titled("KPIs", ids.length), h("div", { class: "cards" }, ids.map((id) =>
    h("div", { class: "card" }, h("h3", {}, objectLink(model, id)), descriptionOf(model, id),
      h("dl", { class: "facts" }, model.parts(id).length > 0 && Array.from(model.parts(id), (value) =>
        h("div", {}, h("dt", {}, h("a", { href: model.href(value) }, nameElement(model.name(value)))),
          h("dd", {}, model.node(value).e ? codeBlock(model.node(value).e!, model.node(value).l, 3) : "not set"))))))));
}

function dimensions(model: Model, cube: number): Child {
  const ids = model.partsOfKind(cube, "cubeDimension");
  if (ids.length === 0) return null;
  return section(titled("Dimensions", ids.length), table({
    label: "dimensions", rows: ids, firstRows: kFirstRows, filterText: (id) => model.name(id),
    columns: [
      { title: "Dimension", cell: (id) => [objectLink(model, id), model.node(id).h === 1 && badge("hidden")] },
      { title: "Database dimension", cell: (id) => {
        const base = baseDimension(model, id);
        return base !== undefined && objectLink(model, base);
      } },
      { title: "Attributes", class: "figure", cell: (id) => count(model.partsOfKind(id, "cubeAttribute").length) },
      { title: "Hierarchies", cell: (id) => {
        const base = baseDimension(model, id);
        return base !== undefined && model.hierarchies(base).map((hierarchy, i) => [i > 0 && ", ", nameElement(hierarchy.n)]);
      } },
    ],
  }));
}

/** The dimension of the database that a cube uses, known by where its attributes come from. */
function baseDimension(model: Model, id: number): number | undefined {
  for (const part of [id, ...model.parts(id)]) {
    for (const edge of model.edgesInto(part)) {
      if (model.kind(edge.from) === "dimension") return edge.from;
      if (model.kind(edge.from) === "attribute") return model.node(edge.from).o;
    }
  }
  return undefined;
}

function groups(model: Model, cube: number): Child {
  const ids = model.partsOfKind(cube, "measureGroup", "linkedMeasureGroup", "calculations", "perspective");
  if (ids.length === 0) return null;
  return section(titled("Measure groups, calculations and perspectives", ids.length), h("ul", { class: "chips" },
    ids.map((id) => {
      const number = model.parts(id).length;
      return h("li", {}, objectLink(model, id), " ", number > 0 && h("span", { class: "number" }, count(number)));
    })));
}

/** What fills the measure groups of a cube. */
function partitions(model: Model, cube: number): Child {
  const ids = model.partsOfKind(cube, "measureGroup").flatMap((group) => model.partsOfKind(group, "partition"));
  if (ids.length === 0) return null;
  return section(titled("Partitions", ids.length), table({
    label: "partitions", rows: ids, firstRows: kFirstRows, group: (id) => model.name(model.node(id).o!),
    filterText: (id) => `${model.name(id)} ${model.name(model.node(id).o!)}`,
    columns: [
      { title: "Partition", cell: (id) => objectLink(model, id) },
      { title: "Reads", class: "wide", cell: (id) => {
        const { e, l } = model.node(id);
        return [model.namedBy(id, "reads").map((source) => h("span", { class: "placed" }, objectLink(model, source))),
          e && codeBlock(e, l, 3)];
      } },
      { title: "Settings", cell: (id) => settingsInShort(model, id) },
    ],
  }));
}

export function cubeSections(model: Model, cube: number): Child {
  return [measures(model, cube), kpis(model, cube), dimensions(model, cube), usageMatrix(model, cube), groups(model, cube),
    partitions(model, cube), scripts(model, cube)];
}
