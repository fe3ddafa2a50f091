// The mark that a kind of object bears beside its name, and in drawings.

import { kindStyle } from "../model/kinds";
import type { Kind } from "../model/model";
import { svg } from "./dom";

/** The mark of a kind. People who do not see it hear the kind's name from the text beside it. */
export function kindMark(kind: Kind): SVGElement {
  const style = kindStyle(kind);
  return svg("svg", { class: `kind ${style.family}`, viewBox: "0 0 16 16", "aria-hidden": "true", focusable: "false" },
    svg("rect", { width: 16, height: 16, rx: 4 }), svg("path", { d: style.glyph }));
}

/** The mark as an image for drawings. It holds nothing of the model. */
export function kindImage(kind: Kind, colour: string): string {
  const text = `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16" width="48" height="48">` +
    `<rect width="16" height="16" rx="4" fill="${colour}"/>` +
    `<path d="${kindStyle(kind).glyph}" fill="none" stroke="#fff" stroke-width="1.2" stroke-linecap="round" ` +
    `stroke-linejoin="round"/></svg>`;
  return "data:image/svg+xml;utf8," + encodeURIComponent(text);
}
