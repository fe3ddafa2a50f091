// Lineage as a tree: what the drawing shows, for those who read, use a keyboard or have it read to them. An
// object that stands further up already is named again, and not opened again.

import { announce, freshId, h } from "../elements/dom";
import { kindMark } from "../elements/kind_mark";
import { badge, edgeMarks } from "../elements/parts";
import { counted, nameElement, plainName } from "../elements/text";
import type { Model } from "../model/model";
import { type Direction, type Expansion, type Flow, other } from "./sight";

const kItemsPerStep = 40;

interface Item {
  element: HTMLLIElement;
  parent: Item | undefined;
  id: number;
  level: number;
  repeated: boolean;
  children: Flow[];
  group: HTMLUListElement | undefined;
  shown: number;
}

export class Tree {
  readonly element: HTMLElement;
  private readonly items = new WeakMap<Element, Item>();
  private readonly seen = new Set<number>();
  private readonly list: HTMLUListElement;

  constructor(private readonly model: Model, private readonly expansion: Expansion,
    private readonly direction: Direction, private readonly open: (id: number) => void) {
    const title = direction === "sources" ? "Sources" : "Dependents";
    const id = freshId("tree");
    this.list = h("ul", { role: "tree", "aria-labelledby": id,
      onkeydown: (event: KeyboardEvent) => this.key(event), onclick: (event: MouseEvent) => this.click(event) });
    this.element = h("div", { class: "tree" }, h("h3", { id }, title), this.list);
    const root = this.make(undefined, expansion.root, undefined);
    this.list.append(root.element);
    root.element.tabIndex = 0;
    this.expand(root);
    if (root.children.length === 1) this.expand(this.first(root));
  }

  private make(parent: Item | undefined, id: number, flow: Flow | undefined): Item {
    const repeated = this.seen.has(id);
    this.seen.add(id);
    const children = repeated ? [] : this.expansion.besideAndItself(id, this.direction);
    const level = parent ? parent.level + 1 : 1;
    const kind = this.model.kind(id);
    const owner = this.model.node(id).o;
    const element = h("li", { role: "treeitem", tabindex: "-1", "aria-level": level },
      h("span", { class: "row" },
        h("span", { class: "twisty", "aria-hidden": "true" }), kindMark(kind), nameElement(this.model.name(id)),
        h("span", { class: "place" }, this.model.kindLabel(id), owner !== undefined && [" · ", nameElement(this.model.name(owner))]),
        flow && [badge(this.model.edgeWords(flow.kind, this.direction), `edge-${flow.style}`), edgeMarks(flow)],
        repeated && h("span", { class: "badge" }, "shown above")));
    element.setAttribute("aria-label", this.label(id, flow, repeated, children.length));
    if (children.length > 0) element.setAttribute("aria-expanded", "false");
    const item = { element, parent, id, level, repeated, children, group: undefined, shown: 0 };
    this.items.set(element, item);
    return item;
  }

  private label(id: number, flow: Flow | undefined, repeated: boolean, children: number): string {
    const owner = this.model.node(id).o;
    return [
      `${plainName(this.model.name(id))}, ${this.model.kindLabel(id)}`,
      owner !== undefined && `of ${plainName(this.model.name(owner))}`,
      flow && this.model.edgeWords(flow.kind, this.direction),
      repeated && "shown above",
      children > 0 && counted(children, this.direction === "sources" ? "source" : "dependent"),
    ].filter((part) => part !== false && part !== undefined).join(", ");
  }

  private first(item: Item): Item {
    return this.items.get(item.group!.firstElementChild!)!;
  }

  private expand(item: Item): void {
    if (item.children.length === 0) return;
    if (!item.group) {
      item.group = h("ul", { role: "group" });
      item.element.append(item.group);
      this.showMore(item);
    }
    item.group.hidden = false;
    item.element.setAttribute("aria-expanded", "true");
  }

  private collapse(item: Item): void {
    if (item.group) item.group.hidden = true;
    item.element.setAttribute("aria-expanded", "false");
  }

  private isExpanded(item: Item): boolean {
    return item.element.getAttribute("aria-expanded") === "true";
  }

  private showMore(item: Item): HTMLElement {
    const next = item.children.slice(item.shown, item.shown + kItemsPerStep);
    const made = next.map((flow) => this.make(item, other(flow, this.direction), flow).element);
    item.group!.append(...made);
    item.shown += next.length;
    const left = item.children.length - item.shown;
    if (left > 0) {
      const text = `Show ${Math.min(left, kItemsPerStep)} more of ${left}`;
      item.group!.append(h("li", { role: "treeitem", tabindex: "-1", class: "more", "aria-level": item.level + 1 }, text));
    }
    return made[0]!;
  }

  /** Puts the next ones where an item "Show more" stands. */
  private replaceMore(element: HTMLElement): void {
    const item = this.items.get(element.parentElement!.parentElement!)!;
    const first = this.showMore(item);
    element.remove();
    this.focus(first);
    announce(`${counted(item.shown, "object")} of ${item.children.length} shown`);
  }

  private focus(element: HTMLElement): void {
    for (const old of this.list.querySelectorAll<HTMLElement>("[tabindex='0']")) old.tabIndex = -1;
    element.tabIndex = 0;
    element.focus();
  }

  private visible(): HTMLElement[] {
    const all = Array.from(this.list.querySelectorAll<HTMLElement>("[role=treeitem]"));
    return all.filter((element) => !element.closest("[hidden]"));
  }

  private click(event: MouseEvent): void {
    const target = event.target as Element;
    const element = target.closest<HTMLElement>("[role=treeitem]");
    if (!element) return;
    if (element.classList.contains("more")) return this.replaceMore(element);
    const item = this.items.get(element)!;
    this.focus(element);
    if (target.closest("bdi") && target.closest("[role=treeitem]") === element && !target.closest(".place")) this.open(item.id);
    else if (this.isExpanded(item)) this.collapse(item);
    else this.expand(item);
  }

  private key(event: KeyboardEvent): void {
    const element = document.activeElement as HTMLElement;
    const item = this.items.get(element);
    const visible = this.visible();
    const at = visible.indexOf(element);
    const steps: Record<string, () => void> = {
      ArrowDown: () => at + 1 < visible.length && this.focus(visible[at + 1]!),
      ArrowUp: () => at > 0 && this.focus(visible[at - 1]!),
      Home: () => this.focus(visible[0]!),
      End: () => this.focus(visible[visible.length - 1]!),
      ArrowRight: () => item && (this.isExpanded(item) ? this.focus(this.first(item).element) : this.expand(item)),
      ArrowLeft: () => {
        if (item && this.isExpanded(item)) this.collapse(item);
        else if (item?.parent) this.focus(item.parent.element);
      },
      Enter: () => item ? this.open(item.id) : this.replaceMore(element),
      " ": () => {
        if (!item) this.replaceMore(element);
        else if (this.isExpanded(item)) this.collapse(item);
        else this.expand(item);
      },
    };
    const step = steps[event.key];
    if (!step || event.ctrlKey || event.metaKey || event.altKey || at < 0) return;
    event.preventDefault();
    step();
  }
}
