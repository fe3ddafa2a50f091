// What stands right beside an object: what it names, and what names it, under the words of each relation.

import { type Child, h } from "../elements/dom";
import { capitalized, edgeMarks, placedLink, section, table, titled } from "../elements/parts";
import { nameElement } from "../elements/text";
import type { Edge, Model } from "../model/model";
import type { Direction } from "../lineage/sight";

function besides(model: Model, title: string, direction: Direction, edges: Edge[]): Child {
  if (edges.length === 0) return null;
  const end = direction === "sources" ? "from" : "to";
  const words = (edge: Edge): string => model.edgeWords(edge.kind, direction);
  // The order of an expression stays within a kind: sorting is stable.
  const rows = edges.slice().sort((a, b) => model.rank(a) - model.rank(b));
  return section(titled(title, edges.length), table({
    label: title, rows, group: words, filterText: (edge) => `${words(edge)} ${model.name(edge[end])} ${edge.text}`,
    columns: [{ title: "Object", cell: (edge) => [placedLink(model, edge[end]), edgeMarks(edge),
      edge.text !== "" && h("span", { class: "place edge-text" }, nameElement(edge.text))] }],
  }));
}

/** What a perspective shows, kind by kind. */
export function shown(model: Model, perspective: number): Child {
  const ids = Array.from(new Set(model.namedBy(perspective, "member")));
  if (ids.length === 0) return section("Shows", h("p", { class: "note" }, "Nothing, as far as this document tells."));
  ids.sort((a, b) => model.kindRank(a) - model.kindRank(b));
  return section(titled("Shows", ids.length), table({
    label: "shown", rows: ids, filterText: (id) => model.node(id).q ?? model.name(id),
    group: (id) => capitalized(model.kindWords(model.kind(id))!.many),
    columns: [{ title: "Object", cell: (id) => placedLink(model, id) }],
  }));
}

/** `left` tells which relations the page shows in another way. */
export function relations(model: Model, id: number, left: (edge: Edge) => boolean = () => false): Child {
  return [
    besides(model, "Sources", "sources", model.edgesInto(id).filter((edge) => !left(edge))),
    besides(model, "Dependents", "dependents", model.edgesOutOf(id).filter((edge) => !left(edge))),
  ];
}
