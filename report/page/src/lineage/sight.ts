// What of the lineage is in sight. Starting from one object, each object in sight can be opened towards what it
// comes from and towards what depends on it; a step shows a few, and more when asked.

import { kFlowStyles } from "../model/kinds";
import type { Edge, FlowStyle, Model } from "../model/model";

export type Direction = "sources" | "dependents";
export const kDirections: Direction[] = ["sources", "dependents"];

/** How many objects one step shows. */
export const kStep = 12;
/** What a drawing holds at most: more can neither be read nor moved fluently. */
export const kMostInSight = 300;

/** A way from one object to another, along which data flow. Several edges of the model may make one. */
export interface Flow extends Pick<Edge, "from" | "to" | "kind" | "style" | "found" | "replaces"> {
  count: number;
}

export class EdgeFilter {
  private readonly shown = new Set((Object.keys(kFlowStyles) as FlowStyle[]).filter((style) => kFlowStyles[style].first));
  has(style: FlowStyle): boolean {
    return this.shown.has(style);
  }
  set(style: FlowStyle, on: boolean): void {
    if (on) this.shown.add(style);
    else this.shown.delete(style);
  }
}

/** Lineage between objects, or between the tables, dimensions and cubes that they are parts of. */
export interface Flows {
  /** The objects beside one, each once, in the order of the model. */
  beside(id: number, direction: Direction): Flow[];
}

/** Puts flows between the same two objects together: the first gives the kind. */
function merged(flows: Iterable<Flow>, key: (flow: Flow) => number): Flow[] {
  const made = new Map<number, Flow>();
  for (const flow of flows) {
    const known = made.get(key(flow));
    if (known) known.count++;
    else made.set(key(flow), { ...flow });
  }
  return Array.from(made.values());
}

export class ObjectFlows implements Flows {
  constructor(private readonly model: Model, private readonly filter: EdgeFilter) {}

  beside(id: number, direction: Direction): Flow[] {
    const edges = direction === "sources" ? this.model.edgesInto(id) : this.model.edgesOutOf(id);
    const flows = edges.filter((edge) => this.filter.has(edge.style)).map((edge) => ({ ...edge, count: 1 }));
    return merged(flows, direction === "sources" ? (flow) => flow.from : (flow) => flow.to);
  }
}

/** Lineage between what holds the objects; what happens inside one is left out. */
export class ContainerFlows implements Flows {
  private readonly containers: Int32Array;

  constructor(private readonly model: Model, private readonly filter: EdgeFilter) {
    this.containers = new Int32Array(model.nodeCount).fill(-1);
  }

  beside(id: number, direction: Direction): Flow[] {
    return merged(this.leaving(id, direction), direction === "sources" ? (flow) => flow.from : (flow) => flow.to);
  }

  private *leaving(id: number, direction: Direction): Generator<Flow> {
    const open = [id];
    for (let node = open.pop(); node !== undefined; node = open.pop()) {
      const edges = direction === "sources" ? this.model.edgesInto(node) : this.model.edgesOutOf(node);
      for (const edge of edges) {
        const from = this.container(edge.from);
        const to = this.container(edge.to);
        if (from !== to && this.filter.has(edge.style)) yield { ...edge, from, to, count: 1 };
      }
      for (const part of Array.from(this.model.parts(node)).reverse())
        if (!this.model.isContainer(part)) open.push(part);
    }
  }

  private container(id: number): number {
    if (this.containers[id] !== -1) return this.containers[id]!;
    let container = id;
    while (!this.model.isContainer(container)) {
      const owner = this.model.node(container).o;
      if (owner === undefined) break;
      container = owner;
    }
    this.containers[id] = container;
    return container;
  }
}

/** An object's handle on one side: what a click on it does. */
export interface Handle {
  id: number;
  direction: Direction;
  open: boolean;
  /** How many are not in sight. */
  hidden: number;
}

export interface Sight {
  ids: number[];
  flows: Flow[];
  handles: Handle[];
  /** Whether some more would have been shown, but kMostInSight are. */
  full: boolean;
}

export class Expansion {
  private readonly limits: Record<Direction, Map<number, number>> = { sources: new Map(), dependents: new Map() };
  private readonly known: Record<Direction, Map<number, Flow[]>> = { sources: new Map(), dependents: new Map() };
  private readonly loops = new Map<number, Flow>();

  constructor(readonly root: number, private readonly flows: Flows) {}

  /** Forgets what was read along edges: other kinds of edges count now. */
  reread(): void {
    for (const direction of kDirections) this.known[direction].clear();
    this.loops.clear();
  }

  /** The other objects beside one. */
  beside(id: number, direction: Direction): Flow[] {
    const known = this.known[direction].get(id);
    if (known) return known;
    const flows = this.flows.beside(id, direction);
    const others = flows.filter((flow) => flow.from !== flow.to);
    const loop = flows.find((flow) => flow.from === flow.to);
    if (loop) this.loops.set(id, loop);
    this.known[direction].set(id, others);
    return others;
  }

  /** The objects beside one, and itself where it is computed from itself. */
  besideAndItself(id: number, direction: Direction): Flow[] {
    const others = this.beside(id, direction);
    const loop = this.loops.get(id);
    return loop ? [...others, loop] : others;
  }

  isOpen(id: number, direction: Direction): boolean {
    return this.limits[direction].has(id);
  }
  /** Opens a side, or shows more of one that is open. */
  open(id: number, direction: Direction, more = kStep): void {
    this.limits[direction].set(id, (this.limits[direction].get(id) ?? 0) + more);
  }
  close(id: number, direction: Direction): void {
    this.limits[direction].delete(id);
  }

  /** Opens side after side, the nearest first, until `most` objects are in sight or all is. */
  openFar(direction: Direction, depth: number, most: number): void {
    let level = [this.root];
    const seen = new Set(level);
    for (let step = 0; step < depth && level.length > 0; step++) {
      const next: number[] = [];
      for (const id of level) {
        const others = this.beside(id, direction).map((flow) => other(flow, direction));
        if (others.length === 0 || (seen.size + Math.min(others.length, kStep) > most && id !== this.root)) continue;
        if (!this.isOpen(id, direction)) this.open(id, direction);
        for (const one of others.slice(0, this.limits[direction].get(id))) {
          if (seen.has(one)) continue;
          seen.add(one);
          next.push(one);
        }
      }
      level = next;
    }
  }

  sight(): Sight {
    const seen = new Set([this.root]);
    let full = false;
    // A set is walked in the order of adding, also while it grows.
    for (const id of seen) {
      for (const direction of kDirections) {
        const limit = this.limits[direction].get(id);
        if (limit === undefined) continue;
        for (const flow of this.beside(id, direction).slice(0, limit)) {
          if (seen.size < kMostInSight) seen.add(other(flow, direction));
          else full ||= !seen.has(other(flow, direction));
        }
      }
    }
    const ids = Array.from(seen);
    const flows = ids.flatMap((id) => this.flowsInSight(id, seen));
    return { ids, flows, handles: this.handles(ids, seen), full };
  }

  private flowsInSight(id: number, seen: Set<number>): Flow[] {
    return this.besideAndItself(id, "sources").filter((flow) => seen.has(flow.from));
  }

  private handles(ids: number[], seen: Set<number>): Handle[] {
    const handles: Handle[] = [];
    for (const id of ids) {
      for (const direction of kDirections) {
        const hidden = this.beside(id, direction).filter((flow) => !seen.has(other(flow, direction))).length;
        const open = this.isOpen(id, direction);
        if (hidden > 0 || (open && this.beside(id, direction).length > 0)) handles.push({ id, direction, open, hidden });
      }
    }
    return handles;
  }
}

/** The far end of a flow that was found by looking in a direction. */
export function other(flow: Flow, direction: Direction): number {
  return direction === "sources" ? flow.from : flow.to;
}
