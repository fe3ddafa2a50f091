// What stands right beside an object: what it names, and what names it, under the words of each relation.

import { type Child, h } from "../elements/dom";
import { edgeMarks, placedLink, section, table, titled } from "../elements/parts";
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

/** `left` tells which relations the page shows in another way. */
export function relations(model: Model, id: number, left: (edge: Edge) => boolean = () => false): Child {
  return [
    besides(model, "Sources", "sources", model.edgesInto(id).filter((edge) => !left(edge))),
    besides(model, "Dependents", "dependents", model.edgesOutOf(id).filter((edge) => !left(edge))),
  ];
}
