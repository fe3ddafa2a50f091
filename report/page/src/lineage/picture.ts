// The drawing as a picture of its own for slides and documents: an SVG that needs no page around it, or a PNG of that.

import { svg } from "../elements/dom";
import { paintedMark } from "../elements/kind_mark";
import { colours } from "../elements/theme";
import { kFlowStyles } from "../model/kinds";
import type { FlowStyle, Model } from "../model/model";
import { fittedLabels, kCaptionSize, kMarkRoom, kNameSize, kNameWeight, labelsOf } from "./labels";
import { bends, ends, kHeight, type Place, type Placing, type Point } from "./placing";
import type { Flow, Handle, Sight } from "./sight";

export interface Picture {
  text: string;
  width: number;
  height: number;
}

const kMargin = 24;
const kMarkSize = 20;
const kLoopRise = 34;
const kSharpness = 2;
/** Browsers draw no canvas that is larger. */
const kLargestSide = 16_000;

/** XML has no place for these two, whatever a model calls its objects. */
function inXml(text: string): Text {
  return document.createTextNode(text.replace(/[\ufffe\uffff]/g, "\ufffd"));
}

function svgText(attributes: Record<string, string | number>, content: string): SVGElement {
  return svg("text", attributes, inXml(content));
}

/** The ends of edges, one for each style; what they look like is what Cytoscape draws. */
function arrowHead(style: FlowStyle): SVGElement {
  const colour = colours()[kFlowStyles[style].colour];
  const marker = (width: number, shape: SVGElement): SVGElement => svg("marker", {
    id: `end-${style}`, viewBox: "0 0 10 10", refX: 9, refY: 5, markerWidth: width, markerHeight: width,
    markerUnits: "userSpaceOnUse", orient: "auto" }, shape);
  switch (style) {
    case "condition": return marker(10, svg("path", { d: "M0 0 10 5 0 10 3 5z", fill: colour }));
    case "member": return marker(8, svg("circle", { cx: 5, cy: 5, r: 4, fill: colours().surface, stroke: colour }));
    case "secures": return marker(10, svg("path", { d: "M9 0V10", stroke: colour, "stroke-width": 3 }));
    default: return marker(10, svg("path", { d: "M0 0 10 5 0 10z", fill: colour }));
  }
}

const kFoundMark = "start-found";

function foundMark(): SVGElement {
  return svg("marker", { id: kFoundMark, viewBox: "0 0 10 10", refX: 5, refY: 5, markerWidth: 10, markerHeight: 10,
    markerUnits: "userSpaceOnUse" }, svg("path", { d: "M5 0 10 5 5 10 0 5z", fill: colours().accent }));
}

function through(start: Point, controls: Point[], end: Point): string {
  const at = ({ x, y }: Point): string => `${x.toFixed(1)} ${y.toFixed(1)}`;
  const between = (a: Point, b: Point): Point => ({ x: (a.x + b.x) / 2, y: (a.y + b.y) / 2 });
  const pieces = controls.map((control, i) =>
    `Q${at(control)} ${at(i + 1 < controls.length ? between(control, controls[i + 1]!) : end)}`);
  return `M${at(start)}${pieces.length > 0 ? pieces.join("") : `L${at(end)}`}`;
}

function edgePath(flow: Flow, placing: Placing): string {
  if (flow.from === flow.to) {
    const { x, y } = placing.points.get(flow.from)!;
    const top = y - kHeight / 2;
    return `M${x - 14} ${top}C${x - 30} ${top - kLoopRise} ${x + 30} ${top - kLoopRise} ${x + 14} ${top}`;
  }
  const { start, end } = ends(flow, placing);
  return through(start, bends(flow, placing), end);
}

function edge(flow: Flow, placing: Placing): SVGElement {
  const { width, dash, colour } = kFlowStyles[flow.style];
  return svg("path", {
    d: edgePath(flow, placing), fill: "none", stroke: colours()[colour], "stroke-width": width,
    "marker-end": `url(#end-${flow.style})`, ...(dash.length > 0 && { "stroke-dasharray": dash.join(" ") }),
    ...(flow.found && { "marker-start": `url(#${kFoundMark})` }),
  });
}

function box(model: Model, id: number, isRoot: boolean, { x, y, width }: Place, font: string): SVGElement {
  const c = colours();
  const whole = labelsOf(model, id);
  const shown = fittedLabels(whole, font, width);
  const mark = svg("g", { transform: `translate(8 ${(kHeight - kMarkSize) / 2}) scale(${kMarkSize / 16})` },
    ...paintedMark(model.kind(id), c));
  return svg("g", { transform: `translate(${x - width / 2} ${y - kHeight / 2})` },
    svg("title", {}, inXml(`${whole.name}, ${whole.caption}`)),
    svg("rect", { width, height: kHeight, rx: 6, fill: c.raised, stroke: isRoot ? c.ink : c.line,
      "stroke-width": isRoot ? 2 : 1 }),
    mark,
    svgText({ x: kMarkRoom, y: 19, "font-size": kNameSize, "font-weight": kNameWeight, fill: c.ink }, shown.name),
    svgText({ x: kMarkRoom, y: 37, "font-size": kCaptionSize, fill: c.muted }, shown.caption));
}

/** "+3" where more is hidden than the picture shows. */
function more({ id, direction, hidden }: Handle, points: Map<number, Place>): SVGElement {
  const { x, y, width } = points.get(id)!;
  const isSource = direction === "sources";
  return svgText({ x: x + (isSource ? -1 : 1) * (width / 2 + 4), y: y - 10, "font-size": 11, "font-weight": 700,
    fill: colours().accent, "text-anchor": isSource ? "end" : "start" }, `+${hidden}`);
}

/** A picture of what is in sight, in the colours of the page. */
export function picture(model: Model, root: number, sight: Sight, placing: Placing, font: string): Picture {
  const { points } = placing;
  const places = sight.ids.map((id) => points.get(id)!);
  const ys = places.map(({ y }) => y);
  const left = places.reduce((least, { x, width }) => Math.min(least, x - width / 2), Infinity) - 2 * kMargin;
  const top = ys.reduce((a, b) => Math.min(a, b)) - kHeight / 2 - 2 * kMargin;
  const right = places.reduce((most, { x, width }) => Math.max(most, x + width / 2), -Infinity);
  const width = right + 2 * kMargin - left;
  const height = ys.reduce((a, b) => Math.max(a, b)) + kHeight / 2 + kMargin - top;
  const styles = [...new Set(sight.flows.map(({ style }) => style))];
  const whole = svg("svg", { viewBox: `${left} ${top} ${width} ${height}`, width, height, "font-family": font },
    svg("title", {}, inXml(`Lineage of ${labelsOf(model, root).name}`)),
    svg("defs", {}, ...styles.map(arrowHead), foundMark()),
    svg("rect", { x: left, y: top, width, height, fill: colours().surface }),
    ...sight.flows.map((flow) => edge(flow, placing)),
    ...sight.ids.map((id) => box(model, id, id === root, points.get(id)!, font)),
    ...sight.handles.filter(({ hidden }) => hidden > 0).map((handle) => more(handle, points)));
  return { text: new XMLSerializer().serializeToString(whole), width, height };
}

/** The picture in points of colour, as sharp as the browser can make one of its size. */
export async function asPng({ text, width, height }: Picture): Promise<Blob> {
  const image = new Image();
  image.src = `data:image/svg+xml;charset=utf-8,${encodeURIComponent(text)}`;
  await image.decode();
  const scale = Math.min(kSharpness, kLargestSide / width, kLargestSide / height);
  const canvas = document.createElement("canvas");
  canvas.width = Math.round(width * scale);
  canvas.height = Math.round(height * scale);
  canvas.getContext("2d")?.drawImage(image, 0, 0, canvas.width, canvas.height);
  return new Promise((done, failed) => canvas.toBlob(
    (blob) => blob ? done(blob) : failed(new Error("The browser makes no picture of this size.")), "image/png"));
}
