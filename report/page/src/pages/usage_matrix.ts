// Which measure groups of a cube use which of its dimensions, and at which granularity.

import { type Child, h } from "../elements/dom";
import { objectLink, section, table } from "../elements/parts";
import { count, counted, nameElement } from "../elements/text";
import type { Model } from "../model/model";

/** More cells than that are a list. */
const kMostCells = 6000;

interface Usage {
  id: number;
  group: number;
  dimension: number;
}

/** The dimension that a usage or its name tells: the cube's own, or one of the database. */
function dimensionOf(model: Model, id: number): number | undefined {
  const named = model.namedBy(id, "uses");
  return named.find((from) => model.kind(from) === "cubeDimension") ?? named[0];
}

function usagesOf(model: Model, groups: number[]): Usage[] {
  return groups.flatMap((group) => model.partsOfKind(group, "dimensionUsage").flatMap((id) => {
    const dimension = dimensionOf(model, id);
    return dimension === undefined ? [] : [{ id, group, dimension }];
  }));
}

/** What a cell says: the attribute that joins them, and the way there where it is none of the plain ones. */
function cell(model: Model, usage: Usage): Child {
  const granularity = model.namedBy(usage.id, "granularity").filter((id) => !model.kind(id).endsWith("Column"));
  const bridges = model.namedBy(usage.id, "bridge");
  const link = (ids: number[], word: string): Child => ids.length > 0 && h("span", { class: "way" }, word, " ",
    ids.map((id, i) => [i > 0 && ", ", h("a", { href: model.href(id) }, nameElement(model.name(id)))]));
  const names = granularity.length === 0 ? (bridges.length > 0 ? "many to many" : "joined")
    : granularity.map((id, i) => [i > 0 && ", ", nameElement(model.name(id))]);
  return [h("a", { href: model.href(usage.id) }, names), link(model.namedBy(usage.id, "intermediate"), "through"),
    link(bridges, "bridged by")];
}

function matrix(model: Model, dimensions: number[], groups: number[], usages: Usage[]): HTMLElement {
  const byPlace = new Map(usages.map((usage) => [`${usage.dimension} ${usage.group}`, usage]));
  return table({
    label: "dimension usage", rows: dimensions, filterText: (id) => model.name(id), firstRows: 40,
    columns: [
      { title: "Dimension", class: "fixed", cell: (dimension) => objectLink(model, dimension) },
      ...groups.map((group) => ({
        title: objectLink(model, group), class: "usage",
        cell: (dimension: number): Child => {
          const usage = byPlace.get(`${dimension} ${group}`);
          return usage ? cell(model, usage) : h("span", { class: "none" }, "–");
        },
      })),
    ],
  });
}

function list(model: Model, usages: Usage[]): HTMLElement {
  return table({
    label: "dimension usage", rows: usages, group: (usage) => model.name(usage.group),
    filterText: (usage) => `${model.name(usage.group)} ${model.name(usage.dimension)}`,
    columns: [
      { title: "Dimension", cell: (usage) => objectLink(model, usage.dimension) },
      { title: "Granularity", cell: (usage) => cell(model, usage) },
    ],
  });
}

export function usageMatrix(model: Model, cube: number): Child {
  const groups = model.partsOfKind(cube, "measureGroup", "linkedMeasureGroup");
  const usages = usagesOf(model, groups);
  if (usages.length === 0) return null;
  const own = model.partsOfKind(cube, "cubeDimension");
  // A usage may name a dimension that the cube has not: its row is there all the same.
  const dimensions = Array.from(new Set([...own, ...usages.map((usage) => usage.dimension)]));
  const fits = dimensions.length * groups.length <= kMostCells;
  return section(["Dimension usage ", h("span", { class: "number" },
    `${counted(dimensions.length, "dimension")} × ${counted(groups.length, "measure group")}, ${count(usages.length)} joined`)],
    fits ? matrix(model, dimensions, groups, usages) : list(model, usages));
}
