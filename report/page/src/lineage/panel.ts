// The lineage of one object: a drawing that is opened step by step, and the same as a tree.

import { announce, h, offerFile, svg } from "../elements/dom";
import { codeBlock, kFoundByGraph, objectLink, ownerNames } from "../elements/parts";
import { counted, plainName } from "../elements/text";
import { onThemeChange } from "../elements/theme";
import { kFlowStyles } from "../model/kinds";
import type { FlowStyle, Model } from "../model/model";
import { Drawing } from "./drawing";
import { asPng } from "./picture";
import {
  ContainerFlows, type Direction, EdgeFilter, type Flows, Expansion, kDirections, kMostInSight, ObjectFlows,
} from "./sight";
import { Tree } from "./tree";

type View = "drawing" | "tree";

/** How far each side is opened at first. */
interface FirstView {
  sources: number;
  dependents: number;
}

/** Far enough to tell a story, few enough to be read; the first one that there is room for. */
const kFirstViews: [FirstView, ...FirstView[]] = [
  { sources: 4, dependents: 1 }, { sources: 1, dependents: 1 }, { sources: 4, dependents: 0 }, { sources: 1, dependents: 0 },
];
const kMostSources = 22;
const kMostDependents = 12;
const kFarDepth = 30;
const kFarMost = 150;
const kZoomStep = 1.25;

const kHelp = "Drag to pan. Click to select an object, double-click to open it; +N expands N hidden objects. " +
  "Keys: arrow keys select, Enter opens, + and − expand and collapse the selected object.";

/** Someone who prefers the tree gets it for the next object, too. */
let preferredView: View = "drawing";

interface EdgesInModel {
  styles: Set<FlowStyle>;
  /** Whether the graph found some where the model has none. */
  found: boolean;
}

/** Only the kinds of edges that the model has are offered. */
const edgesInModel = new WeakMap<Model, EdgesInModel>();
function edgesOf(model: Model): EdgesInModel {
  let edges = edgesInModel.get(model);
  if (!edges) {
    edges = { styles: new Set(), found: false };
    for (let i = 0; i < model.edgeCount; i++) {
      const { style, found } = model.edge(i);
      edges.styles.add(style);
      edges.found ||= found;
    }
    edgesInModel.set(model, edges);
  }
  return edges;
}

export class LineagePanel {
  readonly element: HTMLElement;
  private readonly filter = new EdgeFilter();
  private expansion: Expansion;
  private readonly byContainers: boolean;
  private drawing: Drawing | undefined;
  private selected: number;
  private readonly ended = new AbortController();

  private readonly canvas = h("div", { class: "canvas" });
  private readonly focusRing = h("div", { class: "focus-frame", tabindex: "0", role: "application" },
    this.canvas);
  private readonly strip = h("div", { class: "selection" });
  private readonly note = h("p", { class: "note" });
  private readonly drawingView: HTMLElement;
  private readonly treeView = h("div", { class: "trees" });
  private readonly viewButtons: Record<View, HTMLButtonElement>;

  constructor(private readonly model: Model, private readonly root: number, private readonly open: (id: number) => void) {
    const kind = model.kind(root);
    this.byContainers = model.isContainer(root);
    // A cube is what it shows: without these edges it would stand there alone.
    if (kind === "cube" || kind === "perspective" || kind === "cubeDimension") this.filter.set("member", true);
    else this.showSomething();
    this.selected = root;
    this.expansion = this.opened(kFirstViews[0]);
    this.focusRing.setAttribute("aria-label", `Lineage of ${plainName(model.name(root))}. ${kHelp}`);
    this.focusRing.addEventListener("keydown", (event) => this.key(event));
    this.focusRing.addEventListener("pointerdown", () => this.focusRing.focus({ preventScroll: true }));
    // Who scrolls down the page does not want to be caught by the drawing on the way.
    this.focusRing.addEventListener("wheel", (event) => {
      if (!event.ctrlKey && document.activeElement !== this.focusRing) event.stopPropagation();
    }, { capture: true });
    this.drawingView = h("div", { class: "drawing" }, this.tools(), this.focusRing,
      this.strip, this.note);
    const view = (name: View, label: string): HTMLButtonElement =>
      h("button", { type: "button", onclick: () => this.show(name) }, label);
    this.viewButtons = { drawing: view("drawing", "Drawing"), tree: view("tree", "Tree") };
    this.element = h("section", { class: "panel lineage", "aria-labelledby": "lineage-title" },
      h("div", { class: "panel-head" }, h("h2", { id: "lineage-title" }, "Lineage"), this.legend(),
        h("div", { class: "switch", role: "group", "aria-label": "Show lineage as" }, Object.values(this.viewButtons))),
      this.drawingView, this.treeView);
    onThemeChange(() => this.drawing?.recolour(), this.ended.signal);
  }

  /** Called when the panel stands in the page: drawing needs its size. */
  attached(): void {
    this.show(preferredView, true);
  }

  detached(): void {
    this.ended.abort();
    this.drawing?.destroy();
  }

  private flows(): Flows {
    return this.byContainers ? new ContainerFlows(this.model, this.filter) : new ObjectFlows(this.model, this.filter);
  }

  /** Of an object that gives and takes no values, its other relations are shown at once. */
  private showSomething(): void {
    const flows = this.flows();
    if (kDirections.some((direction) => flows.beside(this.root, direction).length > 0)) return;
    for (const edge of [...this.model.edgesInto(this.root), ...this.model.edgesOutOf(this.root)]) this.filter.set(edge.style, true);
  }

  private opened({ sources, dependents }: FirstView): Expansion {
    const expansion = new Expansion(this.root, this.flows());
    expansion.openFar("sources", sources, kMostSources);
    expansion.openFar("dependents", dependents, kMostDependents);
    return expansion;
  }

  /** As much as fits into the drawing; where nothing does, the object is shown amid what is around it. */
  private start(): Expansion {
    for (const view of kFirstViews) {
      const expansion = this.opened(view);
      if (this.drawing?.hasRoomFor(expansion.sight())) return expansion;
    }
    return this.opened(kFirstViews[0]);
  }

  /** The tree may have opened sides before the drawing is shown. */
  private show(view: View, isUntouched = false): void {
    preferredView = view;
    for (const [name, button] of Object.entries(this.viewButtons)) button.setAttribute("aria-pressed", String(name === view));
    this.drawingView.hidden = view !== "drawing";
    this.treeView.hidden = view !== "tree";
    if (view === "tree") return this.showTree();
    const first = !this.drawing;
    this.drawing ??= new Drawing(this.canvas, this.model, this.root, {
      select: (id) => this.select(id), open: this.open,
      expand: (id, direction) => this.expand(id, direction), collapse: (id, direction) => this.collapse(id, direction),
    });
    if (first && isUntouched) this.expansion = this.start();
    this.redraw();
    if (first) this.drawing.fit();
    this.select(this.selected);
  }

  private showTree(): void {
    this.treeView.replaceChildren(...kDirections.map(
      (direction) => new Tree(this.model, this.expansion, direction, this.open).element));
  }

  private redraw(anchor?: number): void {
    const sight = this.expansion.sight();
    this.drawing?.show(sight, anchor);
    const alone = sight.ids.length === 1;
    this.note.textContent = sight.full ? `The drawing is limited to ${kMostInSight} objects: collapse some to see others.`
      : alone ? "This object has no lineage of the selected kinds." : "";
    if (!sight.ids.includes(this.selected)) this.selected = this.root;
    this.canvas.dataset.objects = String(sight.ids.length);
  }

  private expand(id: number, direction: Direction): void {
    this.change(id, () => this.expansion.open(id, direction));
  }
  private collapse(id: number, direction: Direction): void {
    this.change(id, () => this.expansion.close(id, direction));
  }
  private change(anchor: number, step: () => void): void {
    step();
    this.redraw(anchor);
    this.select(anchor);
    announce(`${counted(this.expansion.sight().ids.length, "object")} shown`);
  }

  private startAgain(): void {
    this.expansion = this.start();
    this.selected = this.root;
    this.redraw();
    this.drawing?.fit();
    this.select(this.root);
  }
  private expandFar(direction: Direction): void {
    this.expansion.openFar(direction, kFarDepth, kFarMost);
    this.redraw();
    this.drawing?.fitTowards(direction);
    this.select(this.selected);
  }

  private select(id: number): void {
    this.selected = id;
    this.drawing?.select(id);
    const node = this.model.node(id);
    const { e, l } = this.model.node(this.model.original(id));
    this.strip.replaceChildren(
      h("div", { class: "selection-head" }, objectLink(this.model, id),
        h("span", { class: "place" }, this.model.kindLabel(id), node.o !== undefined && " in ",
          ownerNames(this.model, this.model.owners(id))),
        h("span", { class: "buttons" }, kDirections.map((direction) => this.sideButton(id, direction)))),
      ...(e && id !== this.root ? [codeBlock(e, l, 3)] : []));
  }

  private sideButton(id: number, direction: Direction): HTMLElement | false {
    const all = this.expansion.beside(id, direction).length;
    if (all === 0) return false;
    const open = this.expansion.isOpen(id, direction);
    const what = counted(all, direction === "sources" ? "source" : "dependent");
    return h("button", { type: "button", class: "quiet", "aria-expanded": String(open),
      onclick: () => open ? this.collapse(id, direction) : this.expand(id, direction) },
      open ? `− Hide ${what}` : `+ Show ${what}`);
  }

  private tools(): HTMLElement {
    const tool = (label: string, text: string, action: () => void): HTMLElement =>
      h("button", { type: "button", title: label, "aria-label": label, onclick: action }, text);
    return h("div", { class: "tools", role: "group", "aria-label": "Drawing tools" },
      tool("All sources", "« All sources", () => this.expandFar("sources")),
      tool("All dependents", "All dependents »", () => this.expandFar("dependents")),
      tool("Reset", "Reset", () => this.startAgain()),
      tool("Zoom in", "+", () => this.drawing?.zoomBy(kZoomStep)),
      tool("Zoom out", "−", () => this.drawing?.zoomBy(1 / kZoomStep)),
      tool("Fit to view", "Fit", () => this.drawing?.fit()),
      tool("Save as SVG", "SVG", () => this.saveSvg()),
      tool("Save as PNG", "PNG", () => void this.savePng()));
  }

  private saveSvg(): void {
    const picture = this.drawing?.picture();
    if (picture) this.offer(new Blob([picture.text], { type: "image/svg+xml" }), "svg");
  }
  private async savePng(): Promise<void> {
    const picture = this.drawing?.picture();
    if (!picture) return;
    try {
      this.offer(await asPng(picture), "png");
    } catch (error) {
      this.note.textContent = `The drawing could not be saved as PNG: ${(error as Error).message} SVG has no such limit.`;
    }
  }
  private offer(content: Blob, extension: string): void {
    const file = offerFile(content, plainName(this.model.name(this.root)), extension);
    announce(`Saving ${file}`);
  }

  private legend(): HTMLElement {
    const styles = (Object.keys(kFlowStyles) as FlowStyle[]).filter((style) => edgesOf(this.model).styles.has(style));
    return h("fieldset", { class: "legend" }, h("legend", { class: "unseen" }, "Kinds of lineage shown"),
      styles.map((style) => h("label", { title: kFlowStyles[style].meaning },
        h("input", { type: "checkbox", checked: this.filter.has(style), onchange: (event: Event) => {
          this.filter.set(style, (event.target as HTMLInputElement).checked);
          this.expansion.reread();
          this.show(preferredView);
        } }), edgeSample(style), kFlowStyles[style].label)),
      edgesOf(this.model).found && h("span", { class: "sample", title: kFoundByGraph },
        svg("svg", { class: "edge-sample found", viewBox: "0 0 26 8", "aria-hidden": "true" },
          svg("line", { x1: 4, y1: 4, x2: 25, y2: 4, "stroke-width": 1.5, "stroke-dasharray": "7 4" }),
          svg("path", { d: "M1 4l4-4 4 4-4 4z" })), "Found by the graph"));
  }

  private key(event: KeyboardEvent): void {
    const arrows: Record<string, [number, number]> = {
      ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1],
    };
    const arrow = arrows[event.key];
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (arrow) this.moveTo(this.drawing?.neighbour(this.selected, ...arrow));
    else if (event.key === "Enter") this.open(this.selected);
    else if (event.key === "+" || event.key === "=") this.change(this.selected, () => this.openBothSides());
    else if (event.key === "-") this.change(this.selected, () => this.closeBothSides());
    else return;
    event.preventDefault();
  }

  private openBothSides(): void {
    for (const direction of kDirections) this.expansion.open(this.selected, direction);
  }
  private closeBothSides(): void {
    for (const direction of kDirections) this.expansion.close(this.selected, direction);
  }

  private moveTo(id: number | undefined): void {
    if (id === undefined) return;
    this.select(id);
    this.drawing?.reveal(id);
    const hidden = kDirections.map((direction) => this.expansion.beside(id, direction).length);
    announce(`${plainName(this.model.name(id))}, ${this.model.kindLabel(id)}, ` +
      `${counted(hidden[0]!, "source")}, ${counted(hidden[1]!, "dependent")}`);
  }
}

function edgeSample(style: FlowStyle): SVGElement {
  const { width, dash } = kFlowStyles[style];
  return svg("svg", { class: `edge-sample edge-${style}`, viewBox: "0 0 26 8", "aria-hidden": "true" },
    svg("line", { x1: 1, y1: 4, x2: 25, y2: 4, "stroke-width": width, "stroke-dasharray": dash.join(" ") }));
}
