// The mark that a kind of object bears beside its name, and in drawings.

import { kindStyle } from "../model/kinds";
import type { Kind } from "../model/model";
import { svg } from "./dom";
import { type Colours, colours } from "./theme";

/** The mark of a kind. People who do not see it hear the kind's name from the text beside it. */
export function kindMark(kind: Kind): SVGElement {
  const style = kindStyle(kind);
  return svg("svg", { class: `kind ${style.family}`, viewBox: "0 0 16 16", "aria-hidden": "true", focusable: "false" },
    svg("rect", { width: 16, height: 16, rx: 4 }), svg("path", { d: style.glyph }));
}

/** The mark where no style sheet reaches, in a square of 16. It holds nothing of the model. */
export function paintedMark(kind: Kind, palette: Colours): SVGElement[] {
  const { family, glyph } = kindStyle(kind);
  return [
    svg("rect", { width: 16, height: 16, rx: 4, fill: palette[family] }),
    svg("path", { d: glyph, fill: "none", stroke: "#fff", "stroke-width": 1.2, "stroke-linecap": "round", "stroke-linejoin": "round" }),
  ];
}

/** The same as an image for drawings. */
export function kindImage(kind: Kind): string {
  const image = svg("svg", { viewBox: "0 0 16 16", width: 48, height: 48 }, ...paintedMark(kind, colours()));
  return "data:image/svg+xml;utf8," + encodeURIComponent(new XMLSerializer().serializeToString(image));
}
