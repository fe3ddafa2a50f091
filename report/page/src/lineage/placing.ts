// Where the objects of a lineage stand: dagre places them within layers, data flow from left to right.

import { Graph, layout } from "@dagrejs/dagre";
import { rankByStage } from "./layers";
import type { Flow, Sight } from "./sight";

export const kHeight = 46;
const kLayerGap = 58;
const kMargin = 24;
const kUnit = 2;
const kFirstStage = -1;
const kMostWidth = 320;
const kLeastMost = 190;
const kUsualMost = 220;
const kWidthStep = 10;

export interface Point {
  x: number;
  y: number;
}

/** Where the middle of an object is, and how wide its layer. */
export interface Place extends Point {
  width: number;
}

export interface Placing {
  points: Map<number, Place>;
  /** The layers that lines go through between objects, by wayKey. */
  ways: Map<string, Place[]>;
}

/** What the placing asks of objects, and how wide a drawing is that can still be read whole. */
export interface Shapes {
  widthOf(id: number): number;
  stageOf(id: number): number;
  room: number;
}

function wayKey(from: number | string, to: number | string): string {
  return `${from} ${to}`;
}

/** The most that a layer may be wide so that all fit into `room`; where they never do, what shows most names whole. */
function mostWidth(widths: number[], room: number): number {
  const fit = (most: number): boolean =>
    widths.reduce((sum, width) => sum + Math.min(width, most) + kLayerGap, 0) <= room;
  for (let most = kMostWidth; most >= kLeastMost; most -= kWidthStep) if (fit(most)) return most;
  return kUsualMost;
}

/** The layers with as much room as their widest objects need, by where the layout has put them: it is told nothing of
 * widths. */
function layersOf(placed: Map<number, Point>, { widthOf, room }: Shapes): Map<number, Place> {
  const widths = new Map<number, number>();
  for (const [id, { x }] of placed) widths.set(x, Math.max(widths.get(x) ?? 0, widthOf(id)));
  const most = mostWidth(Array.from(widths.values()), room);
  let left = kMargin;
  const layers = new Map<number, Place>();
  for (const x of Array.from(widths.keys()).sort((a, b) => a - b)) {
    const width = Math.min(widths.get(x)!, most);
    layers.set(x, { x: left + width / 2, y: 0, width });
    left += width + kLayerGap;
  }
  return layers;
}

export function place(sight: Sight, shapes: Shapes): Placing {
  const graph = new Graph();
  // The layout adds a node in front of all others while it works.
  const stage = (node: string): number => Number.isInteger(Number(node)) ? shapes.stageOf(Number(node)) : kFirstStage;
  const ranker: unknown = (ranked: Graph) => rankByStage(ranked, stage);
  graph.setGraph({
    rankdir: "LR", nodesep: 16, ranksep: kLayerGap, marginx: kMargin, marginy: kMargin, ranker: ranker as "longest-path",
  });
  graph.setDefaultEdgeLabel(() => ({}));
  for (const id of sight.ids) graph.setNode(String(id), { width: kUnit, height: kHeight });
  for (const flow of sight.flows) if (flow.from !== flow.to) graph.setEdge(String(flow.from), String(flow.to));
  layout(graph);
  const rounded = ({ x, y }: Point): Point => ({ x: Math.round(x), y });
  const placed = new Map(sight.ids.map((id) => [id, rounded(graph.node(String(id)) as Point)]));
  const layers = layersOf(placed, shapes);
  const points = new Map(sight.ids.map((id) => {
    const { x, y } = placed.get(id)!;
    return [id, { ...layers.get(x)!, y }];
  }));
  // The layout gives points between the layers, too.
  const wayOf = (edge: { v: string; w: string }): Place[] =>
    (graph.edge(edge) as { points: Point[] }).points.map(rounded)
      .flatMap(({ x, y }) => layers.has(x) ? [{ ...layers.get(x)!, y }] : []);
  const ways = new Map(graph.edges().map((edge) => [wayKey(edge.v, edge.w), wayOf(edge)]));
  return { points, ways };
}

/** Where the line of a flow begins and ends: it leaves an object to the right and reaches the next from the left. */
export function ends({ from, to }: Pick<Flow, "from" | "to">, { points }: Placing): { start: Point; end: Point } {
  const start = points.get(from)!;
  const end = points.get(to)!;
  return { start: { x: start.x + start.width / 2, y: start.y }, end: { x: end.x - end.width / 2, y: end.y } };
}

/** The control points of a flow's line, through the gaps that the layout left for it. What leads back goes straight
 * and has none. */
export function bends(flow: Pick<Flow, "from" | "to">, placing: Placing): Point[] {
  const { start, end } = ends(flow, placing);
  if (end.x <= start.x) return [];
  const out = { x: start.x + kLayerGap / 2, y: start.y };
  const into = { x: end.x - kLayerGap / 2, y: end.y };
  if (end.x - start.x < kLayerGap + 1) return [out, into];
  const layers = (placing.ways.get(wayKey(flow.from, flow.to)) ?? []).filter(({ x }) => x > start.x && x < end.x);
  return [out, ...layers.flatMap(({ x, y, width }) => [{ x: x - width / 2, y }, { x: x + width / 2, y }]), into];
}
