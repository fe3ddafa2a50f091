// What stands in the box of an object: its name, and below it what it is and where.

import { fitted, plainName } from "../elements/text";
import type { Model } from "../model/model";
import { kWidth } from "./placing";

export const kNameSize = 13.5;
export const kNameWeight = 600;
export const kCaptionSize = 11.5;
/** The room before the text, which the mark of the kind stands in. */
export const kMarkRoom = 34;
const kTextWidth = kWidth - kMarkRoom - 8;

export interface Labels {
  name: string;
  caption: string;
}

/** The whole name and caption of an object. Its owner is in the caption, so the name is its own alone: cut, the parts
 * of a KPI would all read the same. */
export function labelsOf(model: Model, id: number): Labels {
  const { n, o: owner } = model.node(id);
  const kind = model.kindLabel(id);
  return {
    name: plainName(n),
    caption: owner === undefined ? kind : `${kind} · ${plainName(model.name(owner))}`,
  };
}

/** The same, cut to what the box has room for. */
export function fittedLabels({ name, caption }: Labels, font: string): Labels {
  return {
    name: fitted(name, `${kNameWeight} ${kNameSize}px ${font}`, kTextWidth),
    caption: fitted(caption, `${kCaptionSize}px ${font}`, kTextWidth),
  };
}
