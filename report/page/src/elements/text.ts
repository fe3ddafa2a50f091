// Names come from whoever wrote the model. They may hold characters that turn the text around them, that show
// nothing, or that break lines: those are shown as marks.

const kMarkNames = new Map<number, string>([
  [0x061c, "ALM"], [0x200b, "ZWSP"], [0x200e, "LRM"], [0x200f, "RLM"],
  [0x202a, "LRE"], [0x202b, "RLE"], [0x202c, "PDF"], [0x202d, "LRO"], [0x202e, "RLO"],
  [0x2028, "LS"], [0x2029, "PS"],
  [0x2066, "LRI"], [0x2067, "RLI"], [0x2068, "FSI"], [0x2069, "PDI"], [0xfeff, "BOM"],
]);

const kInName = /[\u0000-\u001f\u007f-\u009f\u061c\u200b\u200e\u200f\u2028-\u202e\u2066-\u2069\ufeff]/g;
/** In a text of several lines, line ends and tabs are what they are. */
const kInText = /[\u0000-\u0008\u000b\u000c\u000e-\u001f\u007f-\u009f\u061c\u200b\u200e\u200f\u2028-\u202e\u2066-\u2069\ufeff]/g;

function markOf(character: string): string {
  const code = character.charCodeAt(0);
  return kMarkNames.get(code) ?? "U+" + code.toString(16).toUpperCase().padStart(4, "0");
}

/** A name as a plain string, for titles and drawings: what cannot be seen stands in ⟨⟩. */
export function plainName(name: string): string {
  return name === "" ? "(no name)" : name.replace(kInName, (character) => `⟨${markOf(character)}⟩`);
}

const kLongestMeasured = 200;
const kRuler = document.createElement("canvas").getContext("2d");

/** How many pixels a text is wide in a font as CSS writes it; of a long one, its beginning. */
export function widthOf(text: string, font: string): number {
  if (!kRuler) return Infinity;
  kRuler.font = font;
  return kRuler.measureText(text.slice(0, kLongestMeasured)).width;
}

/** A text for a drawing, cut so that it is no wider than `width` pixels in a font as CSS writes it. */
export function fitted(text: string, font: string, width: number): string {
  if (!kRuler) return text.slice(0, kLongestMeasured);
  const fits = (part: string): boolean => widthOf(part, font) <= width;
  const characters = Array.from(text.slice(0, kLongestMeasured));
  if (characters.length === text.length && fits(text)) return text;
  let low = 0;
  let high = characters.length;
  while (low < high) {
    const middle = Math.ceil((low + high) / 2);
    if (fits(characters.slice(0, middle).join("") + "…")) low = middle;
    else high = middle - 1;
  }
  return characters.slice(0, low).join("") + "…";
}

function appendWithMarks(parent: Node, text: string, marks: RegExp): void {
  let end = 0;
  for (const found of text.matchAll(marks)) {
    parent.appendChild(document.createTextNode(text.slice(end, found.index)));
    const mark = document.createElement("span");
    mark.className = "mark";
    mark.textContent = markOf(found[0]);
    mark.title = "A control character in the text, shown by name";
    parent.appendChild(mark);
    end = found.index + found[0].length;
  }
  parent.appendChild(document.createTextNode(text.slice(end)));
}

/** A name as an element that keeps its direction to itself. */
export function nameElement(name: string): HTMLElement {
  const element = document.createElement("bdi");
  if (name === "") {
    element.className = "none";
    element.textContent = "(no name)";
  } else {
    appendWithMarks(element, name, kInName);
  }
  return element;
}

/** Appends a piece of a longer text, such as an expression. */
export function appendText(parent: Node, text: string): void {
  appendWithMarks(parent, text.replace(/\r\n?/g, "\n"), kInText);
}

const kNumber = new Intl.NumberFormat("en");

export function count(value: number): string {
  return kNumber.format(value);
}

/** "1 measure", "2,000 measures". */
export function counted(value: number, one: string, many = one + "s"): string {
  return `${count(value)} ${value === 1 ? one : many}`;
}

/** A share in whole percents, rounded down so that 100 % means all. */
export function percent(part: number, whole: number): string {
  return whole === 0 ? "none" : `${Math.floor((100 * part) / whole)} %`;
}
