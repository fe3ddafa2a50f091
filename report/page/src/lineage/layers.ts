// Which layer each object of a drawing stands in: those of one stage, such as columns of views, stand in layers of
// their own, one behind the other as far as they feed each other.

import type { Graph } from "@dagrejs/dagre";

/** Layers of objects have one between them, for the lines. */
const kStep = 2;

interface Ranked {
  rank?: number;
}

interface Step {
  /** How many layers the line passes at least. */
  minlen: number;
}

/** The nodes of a graph without circles, each behind all that leads to it. */
function inOrder(graph: Graph): string[] {
  const left = new Map(graph.nodes().map((node) => [node, (graph.inEdges(node) ?? []).length]));
  const ordered = Array.from(left.keys()).filter((node) => left.get(node) === 0);
  for (const node of ordered)
    for (const { w } of graph.outEdges(node) ?? []) {
      left.set(w, left.get(w)! - 1);
      if (left.get(w) === 0) ordered.push(w);
    }
  return ordered;
}

/** Gives each node of the layout's graph its layer. What leads back to an earlier stage stands where it leads to. */
export function rankByStage(graph: Graph, stageOf: (node: string) => number): void {
  const ordered = inOrder(graph);
  const behind = (node: string, counts: (source: string) => boolean, from: (source: string) => number): number =>
    (graph.inEdges(node) ?? []).filter(({ v }) => counts(v)).reduce(
      (most, edge) => Math.max(most, from(edge.v) + (graph.edge(edge) as Step).minlen), 0);

  const within = new Map<string, number>();
  const depths = new Map<number, number>();
  for (const node of ordered) {
    const stage = stageOf(node);
    const depth = behind(node, (source) => stageOf(source) === stage, (source) => within.get(source)!);
    within.set(node, depth);
    depths.set(stage, Math.max(depths.get(stage) ?? 0, depth));
  }
  const firsts = new Map<number, number>();
  let first = 0;
  for (const stage of Array.from(depths.keys()).sort((a, b) => a - b)) {
    firsts.set(stage, first);
    first += depths.get(stage)! + kStep;
  }
  const rankOf = (node: string): number => (graph.node(node) as Ranked).rank!;
  for (const node of ordered) {
    const least = firsts.get(stageOf(node))! + within.get(node)!;
    (graph.node(node) as Ranked).rank = Math.max(least, behind(node, () => true, rankOf));
  }
}
