// Pieces that several pages are made of.

import type { CoverageFigures, Edge, Language, Model } from "../model/model";
import { type Child, freshId, h } from "./dom";
import { highlighted, languageName } from "./highlight";
import { kindMark } from "./kind_mark";
import { count, nameElement } from "./text";

const kFirstRows = 50;
const kRowsPerStep = 200;
/** Texts of more lines or characters are shown folded. */
const kFoldedLines = 4;
const kFoldedCharacters = 360;

/** What it means that the model itself does not hold an edge. */
export const kFoundByGraph =
  "found by the graph, such as through a dimension's role name or a linked measure group";

/** A link to an object, with the mark of its kind. */
export function objectLink(model: Model, id: number): HTMLElement {
  const kind = model.kind(id);
  return h("a", { class: "object-link", href: model.href(id) }, kindMark(kind),
    h("span", { class: "unseen" }, model.kindLabel(id) + " "), nameElement(model.name(id)));
}

/** A link with the object's owners behind it, for lists of objects from everywhere. */
export function placedLink(model: Model, id: number): HTMLElement {
  const owners = model.owners(id);
  return h("span", { class: "placed" }, objectLink(model, id),
    owners.length > 0 && h("span", { class: "place" }, model.kindLabel(id), " in ", ownerNames(model, owners)));
}

export function ownerNames(model: Model, owners: number[]): Child {
  return owners.map((owner, i) => [i > 0 && h("span", { class: "separator" }, " › "), nameElement(model.name(owner))]);
}

export function badge(text: string, kind = ""): HTMLElement {
  return h("span", { class: `badge ${kind}` }, text);
}

/** What is special about a relation, beside what it is called. */
export function edgeMarks(edge: Pick<Edge, "found" | "replaces">): Child {
  return edge.replaces ? badge("replaces the model’s", "found") : edge.found && badge("found by the graph", "found");
}

export function description(model: Model, id: number): Child {
  const text = model.node(id).d;
  return text && h("p", { class: "description" }, nameElement(text));
}

/** An expression or query. What is long is folded, with a button that shows it all. */
export function codeBlock(text: string, language: Language | undefined, foldedLines = kFoldedLines): HTMLElement {
  const pre = h("pre", { class: "code" }, highlighted(text, language));
  pre.style.setProperty("--lines", String(foldedLines));
  const lines = text.split("\n").length;
  if (lines <= foldedLines && text.length <= (kFoldedCharacters * foldedLines) / kFoldedLines) return pre;
  pre.classList.add("folded");
  const unfold = lines === 1 ? "Show in full" : `Show all ${count(lines)} lines`;
  const button = h("button", { type: "button", class: "quiet", "aria-expanded": "false", onclick: () => {
    const folded = pre.classList.toggle("folded");
    button.textContent = folded ? unfold : "Show less";
    button.setAttribute("aria-expanded", String(!folded));
  } }, unfold);
  return h("div", { class: "code-with-button" }, pre, button);
}

export function codeTitle(language: Language | undefined): string {
  return language === "sql" ? "Query text" : language === undefined ? "Expression" : `Expression (${languageName(language)})`;
}

/** "Sum", "Distinct count": how a measure is added up. What the model has no word for stands in a property. */
export function aggregation(model: Model, id: number): string | undefined {
  const { a, x } = model.node(id);
  const name = a === "Other" ? x?.["Aggregation"] ?? a : a;
  return name && name[0] + name.slice(1).replace(/[A-Z]/g, (letter) => " " + letter.toLowerCase());
}

export function section(title: Child, ...content: Child[]): HTMLElement {
  const id = freshId("section");
  return h("section", { class: "panel", "aria-labelledby": id }, h("h2", { id }, title), content);
}

export function titled(title: string, number: number): Child {
  return [title, " ", h("span", { class: "number" }, count(number))];
}

export interface Column<Row> {
  title: Child;
  cell(row: Row): Child;
  class?: string;
  /** What rows are sorted by when the title is pressed: numbers the largest first. Without it they are not. */
  sort?(row: Row): string | number;
}

interface TableOptions<Row> {
  label: string;
  rows: Row[];
  columns: Column<Row>[];
  /** What the filter field looks at; without it there is no such field. */
  filterText?(row: Row): string;
  firstRows?: number;
  /** Rows that follow each other and have the same text here stand below it as a heading. */
  group?(row: Row): string;
}

const kRowsForFilter = 12;

function compare(a: string | number, b: string | number): number {
  return typeof a === "number" && typeof b === "number" ? b - a : String(a).localeCompare(String(b));
}

/** A table that makes rows as they are asked for, and can be filtered and sorted. */
export function table<Row>(options: TableOptions<Row>): HTMLElement {
  const { label, columns, filterText, firstRows = kFirstRows, group } = options;
  const body = h("tbody");
  const more = h("button", { type: "button", class: "more", onclick: () => show(kRowsPerStep) });
  const status = h("span", { class: "status", role: "status" });
  let rows = options.rows;
  let shown = 0;
  let lastGroup: string | undefined;
  let words: string[] = [];
  let sorted: Column<Row> | undefined;
  let backwards = false;

  function rowElements(row: Row): HTMLElement[] {
    const made = h("tr", {}, columns.map((column, i) =>
      i === 0 ? h("th", { scope: "row", class: column.class }, column.cell(row))
        : h("td", { class: column.class }, column.cell(row))));
    const heading = sorted ? undefined : group?.(row);
    if (heading === lastGroup) return [made];
    lastGroup = heading;
    return [h("tr", { class: "group" }, h("th", { scope: "rowgroup", colspan: columns.length }, heading)), made];
  }

  function show(number: number): void {
    const next = rows.slice(shown, shown + number);
    body.append(...next.flatMap(rowElements));
    shown += next.length;
    more.hidden = shown >= rows.length;
    more.textContent = `Show ${count(Math.min(kRowsPerStep, rows.length - shown))} more of ${count(rows.length - shown)}`;
  }

  function arrange(): void {
    rows = words.length === 0 || !filterText ? options.rows : options.rows.filter((row) => {
      const own = filterText(row).toLowerCase();
      return words.every((word) => own.includes(word));
    });
    const key = sorted?.sort;
    if (key) rows = [...rows].sort((a, b) => (backwards ? -1 : 1) * compare(key(a), key(b)));
    body.replaceChildren();
    shown = 0;
    lastGroup = undefined;
    show(firstRows);
  }

  function filter(text: string): void {
    words = text.toLowerCase().split(/\s+/).filter((word) => word !== "");
    arrange();
    status.textContent = words.length === 0 ? "" : `${count(rows.length)} of ${count(options.rows.length)}`;
  }

  function sortBy(column: Column<Row>): void {
    backwards = sorted === column && !backwards;
    sorted = column;
    const isNumber = typeof column.sort!(options.rows[0]!) === "number";
    for (const [i, title] of titles.entries()) {
      if (columns[i] !== column) title.removeAttribute("aria-sort");
      else title.setAttribute("aria-sort", isNumber === backwards ? "ascending" : "descending");
    }
    arrange();
  }

  show(firstRows);
  const sortable = options.rows.length > 1;
  const titles = columns.map((column) => h("th", { scope: "col", class: column.class }, column.sort && sortable
    ? h("button", { type: "button", class: "sort", onclick: () => sortBy(column) }, column.title) : column.title));
  const head = h("thead", {}, h("tr", {}, titles));
  const field = filterText && options.rows.length > kRowsForFilter && h("div", { class: "filter" },
    h("input", { type: "search", placeholder: "Filter", "aria-label": `Filter ${label}`, autocomplete: "off", spellcheck: "false",
      oninput: (event: Event) => filter((event.target as HTMLInputElement).value) }), status);
  return h("div", { class: "table" }, field,
    h("div", { class: "table-scroll" }, h("table", { "aria-label": label }, head, body)), more);
}

/** How much of something traces back to a column. */
export function coverageBar(label: string, [total, reached]: CoverageFigures): HTMLElement {
  const filled = h("span", { class: "filled" });
  filled.style.width = `${total === 0 ? 0 : (100 * reached) / total}%`;
  const bar = h("span", { class: "bar", "aria-hidden": "true" }, filled);
  const figures = total === 0 ? "none" : `${count(reached)} of ${count(total)} (${Math.floor((100 * reached) / total)} %)`;
  return h("div", { class: "coverage" }, h("span", { class: "coverage-label" }, label), bar,
    h("span", { class: "coverage-figures" }, figures));
}

/** Pairs of a term and what is said about it; pairs without a value are left out. */
export function facts(pairs: [term: string, value: Child][]): HTMLElement {
  return h("dl", { class: "facts" }, pairs
    .filter(([, value]) => value !== undefined && value !== null && value !== "" && value !== false)
    .map(([term, value]) => h("div", {}, h("dt", {}, term), h("dd", {}, value))));
}

/** "named sets" as a title. */
export function capitalized(text: string): string {
  return text.slice(0, 1).toUpperCase() + text.slice(1);
}

const kLongValue = 200;

/** A value that may be a whole document. */
export function valueElement(value: string): HTMLElement {
  return value.length > kLongValue || value.includes("\n") ? codeBlock(value, undefined, 3) : nameElement(value);
}

/** What the definition sets about an object, under the definition's names. */
export function settingsSection(model: Model, id: number): Child {
  const settings = model.settings(id);
  if (settings.length === 0) return null;
  return section(titled("Settings", settings.length), table({
    label: "settings", rows: settings, filterText: ({ name, value }) => `${name} ${value}`,
    columns: [
      { title: "Setting", cell: ({ name }) => nameElement(name) },
      { title: "Value", cell: ({ value }) => valueElement(value) },
    ],
  }));
}

const kFewSettings = 5;
const kShortValue = 90;
/** Settings that say nothing in a list: numbers for the server, the same again in other languages. */
const kNotInShort = /^(?:ID|Description$|Translation|lineageTag)/;

/** The first settings of an object, for a cell. One that stands there several times is named once. */
export function settingsInShort(model: Model, id: number): Child {
  const values = new Map<string, string[]>();
  for (const { name, value } of model.settings(id)) {
    if (kNotInShort.test(name)) continue;
    const known = values.get(name);
    if (known) known.push(value);
    else values.set(name, [value]);
  }
  if (values.size === 0) return null;
  const left = values.size - kFewSettings;
  const short = (text: string): string => text.length > kShortValue ? text.slice(0, kShortValue) + "…" : text;
  return h("ul", { class: "plain settings" }, Array.from(values).slice(0, kFewSettings).map(([name, all]) =>
    h("li", {}, h("span", { class: "place" }, nameElement(name), ": "), nameElement(short(all.join(", ").replace(/\s+/g, " "))))),
    left > 0 && h("li", { class: "place" }, `and ${count(left)} more`));
}
