// Where the objects of a lineage stand: dagre places them in layers, data flow from left to right.

import { Graph, layout } from "@dagrejs/dagre";
import type { Flow, Sight } from "./sight";

export const kWidth = 190;
export const kHeight = 46;
const kLayerGap = 58;
const kInLayer = 0.05;

export interface Point {
  x: number;
  y: number;
}

export interface Placing {
  points: Map<number, Point>;
  /** Where the lines go through, by wayKey. */
  ways: Map<string, Point[]>;
}

function wayKey(from: number | string, to: number | string): string {
  return `${from} ${to}`;
}

export function place(sight: Sight): Placing {
  const graph = new Graph();
  graph.setGraph({ rankdir: "LR", nodesep: 16, ranksep: kLayerGap, marginx: 24, marginy: 24 });
  graph.setDefaultEdgeLabel(() => ({}));
  for (const id of sight.ids) graph.setNode(String(id), { width: kWidth, height: kHeight });
  for (const flow of sight.flows) if (flow.from !== flow.to) graph.setEdge(String(flow.from), String(flow.to));
  layout(graph);
  const points = new Map(sight.ids.map((id) => {
    const { x, y } = graph.node(String(id)) as Point;
    return [id, { x, y }];
  }));
  const wayOf = (edge: { v: string; w: string }): Point[] => (graph.edge(edge) as { points: Point[] }).points;
  const ways = new Map(graph.edges().map((edge) => [wayKey(edge.v, edge.w), wayOf(edge)]));
  return { points, ways };
}

/** Where the line of a flow begins and ends: it leaves an object to the right and reaches the next from the left. */
export function ends({ from, to }: Pick<Flow, "from" | "to">, { points }: Placing): { start: Point; end: Point } {
  const { x: startX, y: startY } = points.get(from)!;
  const { x: endX, y: endY } = points.get(to)!;
  return { start: { x: startX + kWidth / 2, y: startY }, end: { x: endX - kWidth / 2, y: endY } };
}

/** The control points of a flow's line, through the gaps that the layout left for it. What leads back goes straight
 * and has none. */
export function bends(flow: Pick<Flow, "from" | "to">, placing: Placing): Point[] {
  const { start, end } = ends(flow, placing);
  if (end.x <= start.x) return [];
  const out = { x: start.x + kLayerGap / 2, y: start.y };
  const into = { x: end.x - kLayerGap / 2, y: end.y };
  if (end.x - start.x < kLayerGap + 1) return [out, into];
  const way = placing.ways.get(wayKey(flow.from, flow.to)) ?? [];
  // The layout gives points between the layers, too; those in a layer are whole steps away.
  const steps = (x: number): number => (x - start.x + kWidth / 2) / (kWidth + kLayerGap);
  const layers = way.filter(({ x }) => x > start.x && x < end.x && Math.abs(steps(x) - Math.round(steps(x))) < kInLayer);
  return [out, ...layers.flatMap(({ x, y }) => [{ x: x - kWidth / 2, y }, { x: x + kWidth / 2, y }]), into];
}
