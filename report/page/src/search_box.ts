// The search field: a combo box whose list is worked with arrow keys.

import { announce, freshId, h } from "./elements/dom";
import { kindMark } from "./elements/kind_mark";
import { ownerNames } from "./elements/parts";
import { counted, nameElement } from "./elements/text";
import type { App } from "./pages/page";

const kShown = 30;

export function searchBox(app: App, showAll: (query: string) => void): HTMLElement {
  const { model } = app;
  const listId = freshId("found");
  const list = h("ul", { id: listId, role: "listbox", "aria-label": "Search results" });
  const foot = h("div", { class: "results-foot" });
  const popup = h("div", { class: "results", hidden: true }, list, foot);
  const input = h("input", {
    type: "text", id: "search", role: "combobox", placeholder: "Search all names", "aria-label": "Search all names",
    "aria-expanded": "false", "aria-controls": listId, "aria-autocomplete": "list", autocomplete: "off", spellcheck: "false",
    oninput: () => show(), onfocus: () => show(), onkeydown: (event: KeyboardEvent) => key(event),
  });
  const box = h("div", { class: "search", role: "search" }, input, h("kbd", { "aria-hidden": "true" }, "/"), popup);
  let ids: number[] = [];
  let active = -1;

  function close(): void {
    popup.hidden = true;
    input.setAttribute("aria-expanded", "false");
    input.removeAttribute("aria-activedescendant");
    active = -1;
  }

  function show(): void {
    const query = input.value;
    if (query.trim() === "") return close();
    const found = app.search().find(query, kShown);
    ids = found.ids;
    active = -1;
    input.removeAttribute("aria-activedescendant");
    list.replaceChildren(...ids.map((id, i) => option(id, i)));
    foot.replaceChildren(found.total === 0 ? "No matches"
      : found.total > ids.length
        ? h("button", { type: "button", class: "quiet", onclick: () => leave(() => showAll(query)) },
          `Show all ${counted(found.total, "object")}`)
        : counted(found.total, "object"));
    popup.hidden = false;
    input.setAttribute("aria-expanded", "true");
    announce(counted(found.total, "object") + " found");
  }

  function option(id: number, i: number): HTMLElement {
    const kind = model.kind(id);
    return h("li", { id: `${listId}-${i}`, role: "option", "aria-selected": "false", onclick: () => leave(() => app.open(id)) },
      kindMark(kind), h("span", { class: "result-name" }, nameElement(model.name(id))),
      h("span", { class: "place" }, model.kindLabel(id), model.owners(id).length > 0 && " in ", ownerNames(model, model.owners(id))));
  }

  function move(to: number): void {
    const options = Array.from(list.children) as HTMLElement[];
    if (options.length === 0) return;
    options[active]?.setAttribute("aria-selected", "false");
    active = (to + options.length) % options.length;
    const option = options[active]!;
    option.setAttribute("aria-selected", "true");
    option.scrollIntoView({ block: "nearest" });
    input.setAttribute("aria-activedescendant", option.id);
  }

  function leave(go: () => void): void {
    close();
    input.value = "";
    input.blur();
    go();
  }

  function key(event: KeyboardEvent): void {
    if (event.key === "Escape") {
      if (popup.hidden) input.blur();
      close();
    } else if (event.key === "ArrowDown") {
      if (popup.hidden) show();
      move(active + 1);
    } else if (event.key === "ArrowUp") {
      move(active < 0 ? -1 : active - 1);
    } else if (event.key === "Enter" && input.value.trim() !== "") {
      const id = ids[Math.max(active, 0)];
      const query = input.value;
      if (active < 0 && ids.length !== 1) leave(() => showAll(query));
      else if (id !== undefined) leave(() => app.open(id));
    } else {
      return;
    }
    event.preventDefault();
  }

  document.addEventListener("pointerdown", (event) => {
    if (!box.contains(event.target as Node)) close();
  });
  box.addEventListener("focusout", (event) => {
    if (event.relatedTarget && !box.contains(event.relatedTarget as Node)) close();
  });
  document.addEventListener("keydown", (event) => {
    const typing = /^(INPUT|TEXTAREA|SELECT)$/.test((event.target as Element).tagName);
    if ((event.key === "/" && !typing) || (event.key === "k" && (event.ctrlKey || event.metaKey))) {
      event.preventDefault();
      input.focus();
      input.select();
    }
  });
  return box;
}
