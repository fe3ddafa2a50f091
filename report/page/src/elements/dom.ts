// Making elements. Text becomes text nodes, so nothing that a model holds is ever read as markup.

export type Child = Node | string | number | null | undefined | false | Child[];
type Listener = (event: never) => void;
type Attributes = Record<string, string | number | boolean | null | undefined | Listener>;

function append(parent: Node, child: Child): void {
  if (Array.isArray(child)) {
    for (const one of child) append(parent, one);
  } else if (child instanceof Node) {
    parent.appendChild(child);
  } else if (child !== null && child !== undefined && child !== false) {
    parent.appendChild(document.createTextNode(String(child)));
  }
}

/** An element; attributes that are functions become listeners of the event behind "on". */
export function h<K extends keyof HTMLElementTagNameMap>(
  tag: K, attributes: Attributes = {}, ...children: Child[]): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === "function") element.addEventListener(name.slice(2), value as EventListener);
    else if (value === true) element.setAttribute(name, "");
    else if (value !== false && value !== null && value !== undefined) element.setAttribute(name, String(value));
  }
  append(element, children);
  return element;
}

export function fragment(...children: Child[]): DocumentFragment {
  const made = document.createDocumentFragment();
  append(made, children);
  return made;
}

let lastId = 0;

/** A name for an element that another one refers to. */
export function freshId(stem: string): string {
  return `${stem}-${++lastId}`;
}

const kSvg = "http://www.w3.org/2000/svg";

export function svg(tag: string, attributes: Record<string, string | number>, ...children: Node[]): SVGElement {
  const element = document.createElementNS(kSvg, tag);
  for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, String(value));
  element.append(...children);
  return element;
}

/** Tells people who do not see the page what has changed. */
export function announce(text: string): void {
  const place = document.getElementById("announcements");
  if (place) place.textContent = text;
}

const kLongestFileName = 80;
/** Not every browser has taken the content when the click returns. */
const kLongestDownload = 60_000;

/** Has the browser save what the page made, as a file of that name; gives the name that it has in the end. */
export function offerFile(content: Blob, name: string, extension: string): string {
  // What a file system or a shell would read as more than a name.
  const harmless = name.replace(/[^\p{L}\p{N} ._-]/gu, "_").replace(/^[. ]+/, "_");
  const stem = Array.from(harmless).slice(0, kLongestFileName).join("").trim();
  const file = `${stem || "lineage"}.${extension}`;
  const address = URL.createObjectURL(content);
  h("a", { href: address, download: file }).click();
  setTimeout(() => URL.revokeObjectURL(address), kLongestDownload);
  return file;
}
