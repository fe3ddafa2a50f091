// Where the objects of a lineage stand: dagre places them in layers, data flow from left to right.

import { Graph, layout } from "@dagrejs/dagre";
import type { Sight } from "./sight";

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
  /** For edges that pass layers: where they go through, by "from to". */
  ways: Map<string, Point[]>;
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
  const ways = new Map(graph.edges().map((edge) => [`${edge.v} ${edge.w}`, wayOf(edge)]));
  return { points, ways };
}

/** The control points of an edge that leaves an object to the right and reaches the next one from the left,
 * through the gaps that the layout left for it. */
export function bends(from: Point, to: Point, way: Point[]): Point[] {
  const start = from.x + kWidth / 2;
  const end = to.x - kWidth / 2;
  const middle = kLayerGap / 2;
  if (end - start < kLayerGap + 1) return [{ x: start + middle, y: from.y }, { x: end - middle, y: to.y }];
  // The layout gives points between the layers, too; those in a layer are whole steps away.
  const steps = (x: number): number => (x - from.x) / (kWidth + kLayerGap);
  const layers = way.filter(({ x }) => x > start && x < end && Math.abs(steps(x) - Math.round(steps(x))) < kInLayer);
  return [{ x: start + middle, y: from.y },
    ...layers.flatMap(({ x, y }) => [{ x: x - kWidth / 2, y }, { x: x + kWidth / 2, y }]), { x: end - middle, y: to.y }];
}
