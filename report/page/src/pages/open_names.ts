// Names in expressions that lead to no attribute or measure, and why.

import { type Child, h } from "../elements/dom";
import { nameElement } from "../elements/text";
import type { Model, OpenNameData } from "../model/model";

const kStates: Record<OpenNameData[1], string> = {
  exists: "exists, but is no attribute or measure", mistake: "not found", beyond: "beyond this definition",
};

function openName([name, state, note]: OpenNameData): HTMLElement {
  return h("li", {}, h("code", {}, nameElement(name)), " ", h("span", { class: "place" }, kStates[state],
    note !== "" && [": ", nameElement(note)]));
}

/** The unresolved names of an object, each with what the details know of it. */
export function openNames(model: Model, id: number): Child {
  const { u = [], y = [] } = model.node(id);
  const known = new Set(y.map(([name]) => name));
  const others = u.filter((name) => !known.has(name));
  if (y.length + others.length === 0) return null;
  return h("ul", { class: "plain" }, y.map(openName), others.map((name) => h("li", {}, h("code", {}, nameElement(name)))));
}
