// Names in expressions that lead to no attribute or measure, and why.

import { type Child, h } from "../elements/dom";
import { nameElement } from "../elements/text";
import type { Model, OpenNameState } from "../model/model";

const kStates: Record<OpenNameState, string> = {
  mistake: "not found", exists: "exists, but is no attribute or measure", beyond: "beyond this definition",
};
export const kOpenNameStates = Object.keys(kStates) as OpenNameState[];

/** The open names of an object, each with what is known of it. */
export function openNames(model: Model, id: number, ...states: OpenNameState[]): Child {
  const names = model.openNames(id, ...states);
  return names.length > 0 && h("ul", { class: "plain" }, names.map(([name, state, note]) =>
    h("li", {}, h("code", {}, nameElement(name)), " ", h("span", { class: "place" }, kStates[state],
      note !== "" && [": ", nameElement(note)]))));
}
