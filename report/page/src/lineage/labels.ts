// What stands in the box of an object: its name, and below it what it is and where.

import { fitted, plainName, widthOf } from "../elements/text";
import type { Model } from "../model/model";

export const kNameSize = 13.5;
export const kNameWeight = 600;
export const kCaptionSize = 11.5;
/** The room before the text, which the mark of the kind stands in. */
export const kMarkRoom = 34;
const kEndRoom = 8;
const kLeastWidth = 140;

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

function nameFont(font: string): string {
  return `${kNameWeight} ${kNameSize}px ${font}`;
}

function captionFont(font: string): string {
  return `${kCaptionSize}px ${font}`;
}

/** How wide a box is that shows all of them. */
export function boxWidth({ name, caption }: Labels, font: string): number {
  const text = Math.max(widthOf(name, nameFont(font)), widthOf(caption, captionFont(font)));
  return Math.max(kLeastWidth, Math.ceil(kMarkRoom + text + kEndRoom));
}

/** The same, cut to what a box of that width has room for. */
export function fittedLabels({ name, caption }: Labels, font: string, width: number): Labels {
  const room = width - kMarkRoom - kEndRoom;
  return { name: fitted(name, nameFont(font), room), caption: fitted(caption, captionFont(font), room) };
}
