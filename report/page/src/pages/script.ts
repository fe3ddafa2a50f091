// The script of a cube: its statements in order, those of a scope inside it.

import { type Child, h } from "../elements/dom";
import { badge, codeBlock, objectLink, section, titled } from "../elements/parts";
import { count, counted } from "../elements/text";
import type { Model } from "../model/model";

const kFirstStatements = 60;
/** What is nested deeper moves no further to the right. */
const kDeepestIndent = 8;

/** Statements are called by their own text, which needs to stand there only once. */
function isNamedByText(model: Model, id: number): boolean {
  const { n, e = "" } = model.node(id);
  return n === "" || e.replace(/\s+/g, " ").includes(n.replace(/\s+/g, " ").slice(0, 40));
}

function statement(model: Model, id: number, depth: number): HTMLElement {
  const { e, l } = model.node(id);
  const assigned = model.naming(id, "assigns").length;
  const item = h("li", { class: "statement" },
    h("div", { class: "statement-head" }, badge(model.kindLabel(id)),
      e && isNamedByText(model, id) ? h("a", { href: model.href(id) }, "details") : objectLink(model, id),
      assigned > 0 && h("span", { class: "place" }, `assigns ${counted(assigned, "object")}`)),
    e && codeBlock(e, l, 6));
  item.style.setProperty("--depth", String(Math.min(depth, kDeepestIndent)));
  return item;
}

/** The statements of a script, or of a scope in one. */
export function statements(model: Model, id: number): Child {
  // Properties of what a statement defines are no statements.
  const rows = model.below(id).filter((row) => model.kind(row.id) !== "other");
  if (rows.length === 0) return null;
  const list = h("ol", { class: "statements" });
  const more = h("button", { type: "button", class: "more", onclick: () => show() });
  let shown = 0;
  function show(): void {
    const next = rows.slice(shown, shown + kFirstStatements);
    list.append(...next.map((row) => statement(model, row.id, row.depth)));
    shown += next.length;
    more.hidden = shown >= rows.length;
    more.textContent = `Show more of ${count(rows.length - shown)}`;
  }
  show();
  return section(titled("Statements in order", rows.length), list, more);
}

/** The scripts of a cube, each with a link to the text as a whole. */
export function scripts(model: Model, cube: number): Child {
  return model.partsOfKind(cube, "script").map((id) => [
    h("p", { class: "note" }, "Script ", objectLink(model, id)), statements(model, id)]);
}
