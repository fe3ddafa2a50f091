// The drawing of a lineage: Cytoscape draws and moves what placing.ts has placed.

import cytoscape from "cytoscape";
import { kindImage } from "../elements/kind_mark";
import { colours } from "../elements/theme";
import { kFlowStyles, stageOf } from "../model/kinds";
import type { Model } from "../model/model";
import { boxWidth, fittedLabels, kCaptionSize, kMarkRoom, kNameSize, kNameWeight, labelsOf } from "./labels";
import { type Picture, picture } from "./picture";
import { bends, ends, kHeight, type Place, place, type Placing, type Point } from "./placing";
import type { Direction, Flow, Handle, Sight } from "./sight";

export interface DrawingActions {
  select(id: number): void;
  open(id: number): void;
  expand(id: number, direction: Direction): void;
  collapse(id: number, direction: Direction): void;
}

const kHandleInset = 5;
const kHandleRise = 14;
/** What handles take beside the boxes. */
const kHandleRoom = 28;
const kMargin = 28;
const kLeastReadable = 0.62;
const kReadable = 0.8;
const kMoveTime = 220;

/** The control points as Cytoscape takes them: along the straight line between the ends, and beside it. */
function curve(flow: Flow, placing: Placing): { weights: string; distances: string } | undefined {
  const controls = bends(flow, placing);
  if (controls.length === 0) return undefined;
  const { start, end } = ends(flow, placing);
  const dx = end.x - start.x;
  const dy = end.y - start.y;
  const square = dx * dx + dy * dy;
  const points = controls.map(({ x, y }) => ({ x: x - start.x, y: y - start.y }));
  return {
    weights: points.map(({ x, y }) => (x * dx + y * dy) / square).join(" "),
    distances: points.map(({ x, y }) => (y * dx - x * dy) / Math.sqrt(square)).join(" "),
  };
}

function styleSheet(): cytoscape.StylesheetJson {
  const c = colours();
  const font = getComputedStyle(document.body).fontFamily;
  return [
    { selector: "core", style: { "active-bg-opacity": 0, "selection-box-opacity": 0, "selection-box-border-width": 0,
      "selection-box-color": c.surface, "active-bg-color": c.surface, "active-bg-size": 0,
      "outside-texture-bg-color": c.surface, "outside-texture-bg-opacity": 1 } },
    { selector: "node.object", style: {
      shape: "round-rectangle", width: "data(width)", height: kHeight, "background-color": c.raised, "border-width": 1,
      "border-color": c.line, "background-image": "data(mark)", "background-width": "20px", "background-height": "20px",
      "background-position-x": "8px", "background-position-y": "50%", "background-fit": "none", "overlay-opacity": 0,
    } },
    { selector: "node.root", style: { "border-width": 2, "border-color": c.ink } },
    { selector: "node.selected", style: { "border-width": 3, "border-color": c.accent, "background-color": c.tint } },
    { selector: "node.text", style: {
      width: 1, height: 1, "background-opacity": 0, events: "no", label: "data(text)", "text-halign": "right",
      "text-valign": "center", "font-family": font, "min-zoomed-font-size": 4, "overlay-opacity": 0,
    } },
    { selector: "node.name", style: { "font-size": kNameSize, "font-weight": kNameWeight, color: c.ink } },
    { selector: "node.caption", style: { "font-size": kCaptionSize, color: c.muted } },
    { selector: "node.handle", style: {
      shape: "round-rectangle", width: "data(width)", height: 18, "background-color": c.surface, "border-width": 1,
      "border-color": c.accent, label: "data(text)", color: c.accent, "font-size": 11, "font-weight": 700,
      "font-family": font, "text-valign": "center", "text-halign": "center", "overlay-opacity": 0,
    } },
    { selector: "edge", style: {
      width: 1.5, "line-color": c.edge, "curve-style": "bezier", "target-arrow-shape": "triangle",
      "target-arrow-color": c.edge, "arrow-scale": 0.9, "source-endpoint": "90deg", "target-endpoint": "270deg",
      "overlay-opacity": 0,
    } },
    { selector: "edge.curved", style: { "curve-style": "unbundled-bezier", "edge-distances": "endpoints",
      "control-point-weights": "data(weights)", "control-point-distances": "data(distances)" } },
    { selector: "edge.loop", style: { "source-endpoint": "outside-to-node", "target-endpoint": "outside-to-node",
      "loop-direction": "0deg", "loop-sweep": "60deg", "control-point-step-size": 44 } },
    ...Object.entries(kFlowStyles).map(([name, { width, dash, colour }]) => ({ selector: `edge.${name}`, style: {
      width, "line-color": c[colour], "target-arrow-color": c[colour],
      ...(dash.length > 0 && { "line-style": "dashed", "line-dash-pattern": dash }),
    } })),
    { selector: "edge.condition", style: { "target-arrow-shape": "vee" } },
    { selector: "edge.member", style: { "target-arrow-shape": "circle", "target-arrow-fill": "hollow" } },
    { selector: "edge.secures", style: { "target-arrow-shape": "tee" } },
    { selector: "edge.found", style: { "source-arrow-shape": "diamond", "source-arrow-color": c.accent } },
    { selector: "edge.near", style: { width: 3, "z-index": 5 } },
  ] as cytoscape.StylesheetJson;
}

export class Drawing {
  private readonly cy: cytoscape.Core;
  private sight: Sight | undefined;
  private placing: Placing = { points: new Map(), ways: new Map() };
  private selected = -1;
  private readonly font = getComputedStyle(document.body).fontFamily;
  private readonly still = matchMedia("(prefers-reduced-motion: reduce)").matches;

  constructor(container: HTMLElement, private readonly model: Model, private readonly root: number,
    private readonly actions: DrawingActions) {
    this.cy = cytoscape({
      container, style: styleSheet(), minZoom: 0.1, maxZoom: 2.5, autoungrabify: true,
      autounselectify: true, boxSelectionEnabled: false,
    });
    this.cy.on("tap", "node.object", (event) => this.actions.select(event.target.data("object") as number));
    this.cy.on("dbltap", "node.object", (event) => this.actions.open(event.target.data("object") as number));
    this.cy.on("tap", "node.handle", (event) => this.useHandle(event.target.data("handle") as HandleUse));
    // Paper cannot be moved to what does not fit.
    this.cy.on("resize", () => { if (matchMedia("print").matches) this.cy.fit(undefined, kMargin); });
    this.cy.on("mouseover", "node.object, node.handle", () => { container.style.cursor = "pointer"; });
    this.cy.on("mouseover", "node.object", (event) => {
      const { name, caption } = labelsOf(model, event.target.data("object") as number);
      container.title = `${name}\n${caption}`;
    });
    this.cy.on("mouseout", "node", () => {
      container.style.cursor = "";
      container.removeAttribute("title");
    });
  }

  destroy(): void {
    this.cy.destroy();
  }

  private get points(): Map<number, Place> {
    return this.placing.points;
  }

  /** What is drawn, as a picture; undefined before anything is. */
  picture(): Picture | undefined {
    return this.sight && picture(this.model, this.root, this.sight, this.placing, this.font);
  }

  /** Draws what is in sight. The object `anchor` stays where it is on the screen. */
  show(sight: Sight, anchor?: number): void {
    const before = anchor === undefined ? undefined : this.points.get(anchor);
    const old = this.points;
    this.sight = sight;
    this.placing = this.place(sight);
    const after = anchor === undefined ? undefined : this.points.get(anchor);
    this.cy.startBatch();
    this.cy.elements().remove();
    this.cy.add(this.elements(sight));
    this.cy.endBatch();
    if (before && after) {
      const zoom = this.cy.zoom();
      this.cy.panBy({ x: (before.x - after.x) * zoom, y: (before.y - after.y) * zoom });
      if (!this.still) this.moveFrom(old, { x: after.x - before.x, y: after.y - before.y });
    }
    this.select(this.selected);
  }

  private place(sight: Sight): Placing {
    return place(sight, {
      widthOf: (id) => boxWidth(labelsOf(this.model, id), this.font),
      stageOf: (id) => stageOf(this.model.kind(id)),
      room: this.room(),
    });
  }

  /** How wide a drawing may be so that all of it can be read at once. */
  private room(): number {
    return (this.cy.width() - 2 * kMargin) / kLeastReadable - 2 * kHandleRoom;
  }

  /** Whether all layers of a sight can be read at once. */
  hasRoomFor(sight: Sight): boolean {
    this.cy.resize();
    const places = Array.from(this.place(sight).points.values());
    const left = places.reduce((least, { x, width }) => Math.min(least, x - width / 2), Infinity);
    const right = places.reduce((most, { x, width }) => Math.max(most, x + width / 2), -Infinity);
    return right - left <= this.room();
  }

  /** Lets objects glide from where they were to where they are now. */
  private moveFrom(old: Map<number, Point>, shift: Point): void {
    this.cy.nodes().forEach((node) => {
      const from = old.get(node.data("object") as number);
      if (!from) return;
      const to = { ...node.position() };
      const centre = this.points.get(node.data("object") as number)!;
      node.position({ x: from.x + shift.x + to.x - centre.x, y: from.y + shift.y + to.y - centre.y });
      node.animate({ position: to }, { duration: kMoveTime, easing: "ease-out" });
    });
  }

  private elements(sight: Sight): cytoscape.ElementDefinition[] {
    const elements: cytoscape.ElementDefinition[] = [];
    for (const id of sight.ids) elements.push(...this.objectElements(id));
    for (const handle of sight.handles) elements.push(...this.handleElements(handle));
    for (const flow of sight.flows) {
      const classes = [flow.style as string];
      if (flow.found) classes.push("found");
      if (flow.from === flow.to) classes.push("loop");
      const bow = curve(flow, this.placing);
      if (bow) classes.push("curved");
      elements.push({ data: { source: `o${flow.from}`, target: `o${flow.to}`, ...bow }, classes: classes.join(" ") });
    }
    return elements;
  }

  private objectElements(id: number): cytoscape.ElementDefinition[] {
    const { x, y, width } = this.points.get(id)!;
    const kind = this.model.kind(id);
    const { name, caption } = fittedLabels(labelsOf(this.model, id), this.font, width);
    const text = (part: string, label: string, offset: number): cytoscape.ElementDefinition => ({
      data: { object: id, text: label }, classes: `text ${part}`,
      position: { x: x - width / 2 + kMarkRoom, y: y + offset },
    });
    return [
      { data: { id: `o${id}`, object: id, mark: kindImage(kind), width },
        classes: id === this.root ? "object root" : "object", position: { x, y } },
      text("name", name, -9),
      text("caption", caption, 10),
    ];
  }

  private handleElements(handle: Handle): cytoscape.ElementDefinition[] {
    const { x, y, width: boxed } = this.points.get(handle.id)!;
    const side = handle.direction === "sources" ? -1 : 1;
    const make = (text: string, use: HandleUse["use"], offset: number): cytoscape.ElementDefinition => {
      const width = 12 + 7 * text.length;
      return {
        data: { object: handle.id, text, width, handle: { id: handle.id, direction: handle.direction, use } },
        classes: "handle", position: { x: x + side * (boxed / 2 - kHandleInset + width / 2), y: y + offset },
      };
    };
    const made: cytoscape.ElementDefinition[] = [];
    if (handle.hidden > 0) made.push(make(`+${handle.hidden}`, "expand", -kHandleRise));
    if (handle.open) made.push(make("−", "collapse", kHandleRise));
    return made;
  }

  private useHandle({ id, direction, use }: HandleUse): void {
    this.actions[use](id, direction);
  }

  select(id: number): void {
    this.selected = id;
    this.cy.batch(() => {
      this.cy.elements(".selected, .near").removeClass("selected near");
      const node = this.cy.getElementById(`o${id}`);
      node.addClass("selected");
      node.connectedEdges().addClass("near");
    });
  }

  /** The object that stands nearest to another one in the direction of an arrow key, or undefined. */
  neighbour(id: number, dx: number, dy: number): number | undefined {
    const at = this.points.get(id);
    if (!at) return undefined;
    let best: number | undefined;
    let bestDistance = Infinity;
    for (const [candidate, point] of this.points) {
      const ahead = (point.x - at.x) * dx + (point.y - at.y) * dy;
      const aside = Math.abs((point.x - at.x) * dy) + Math.abs((point.y - at.y) * dx);
      // Within a layer only straight up and down, between layers whatever is near.
      if (ahead < 1 || (dy !== 0 && aside > 1)) continue;
      const distance = ahead + aside / 4;
      if (distance < bestDistance) [best, bestDistance] = [candidate, distance];
    }
    return best;
  }

  /** Moves the drawing so that an object can be seen. */
  reveal(id: number): void {
    const node = this.cy.getElementById(`o${id}`);
    if (!node.empty() && !this.isInView(id))
      this.cy.animate({ center: { eles: node } }, { duration: this.still ? 0 : kMoveTime });
  }
  private isInView(id: number): boolean {
    const { x1, y1, x2, y2 } = this.cy.extent();
    const { x, y, width } = this.points.get(id)!;
    return x - width / 2 >= x1 && x + width / 2 <= x2 && y - kHeight / 2 >= y1 && y + kHeight / 2 <= y2;
  }

  fit(): void {
    this.cy.resize();
    this.cy.fit(undefined, kMargin);
    if (this.cy.zoom() > 1) {
      this.cy.zoom(1);
      this.cy.center();
    }
    if (this.cy.zoom() < kLeastReadable) {
      // Too small to be read: rather the object itself with what is near it.
      this.cy.zoom(kReadable);
      this.cy.center(this.cy.getElementById(`o${this.root}`));
      this.cy.panBy({ x: this.shareBefore() * this.cy.width() - this.middle().x, y: 0 });
    }
  }
  /** Fits, and where that leaves some out of sight, shows the end that a direction leads to. */
  fitTowards(direction: Direction): void {
    this.fit();
    const side = direction === "sources" ? -1 : 1;
    const reach = (id: number): number => this.points.get(id)!.x * side;
    const end = Array.from(this.points.keys()).reduce((far, id) => reach(id) > reach(far) ? id : far, this.root);
    if (this.isInView(end)) return;
    this.cy.center(this.cy.getElementById(`o${end}`));
    const { width } = this.points.get(end)!;
    this.cy.panBy({ x: side * (this.middle().x - kMargin - (this.cy.zoom() * width) / 2), y: 0 });
  }
  /** Where the object itself stands best, from 0 at the left to 1: the more is before it, the further right. */
  private shareBefore(): number {
    const { x } = this.points.get(this.root)!;
    const others = Array.from(this.points.values()).filter((point) => point.x !== x);
    const before = others.filter((point) => point.x < x).length;
    return others.length === 0 ? 0.5 : 0.2 + (0.6 * before) / others.length;
  }
  zoomBy(factor: number): void {
    this.cy.zoom({ level: this.cy.zoom() * factor, renderedPosition: this.middle() });
  }
  private middle(): Point {
    return { x: this.cy.width() / 2, y: this.cy.height() / 2 };
  }

  /** The theme has changed. */
  recolour(): void {
    this.cy.style(styleSheet());
    this.cy.nodes(".object").forEach((node) => {
      node.data("mark", kindImage(this.model.kind(node.data("object") as number)));
    });
  }
}

interface HandleUse {
  id: number;
  direction: Direction;
  use: "expand" | "collapse";
}
