// What the program writes into the page, and the look-ups over it. A node is known by its number.

/** The name of a kind of object or relation. The program says which there are. */
export type Kind = string;
export type EdgeKind = string;

/** What a relation does, beside giving a value. */
export type Sense = "gives" | "identifies" | "joins" | "narrows" | "secures" | "shows" | "formats" | "other";

export type KindData = [name: Kind, one: string, many: string, hasParts: number,
  inDetailsOnly: number];
export type EdgeKindData = [name: EdgeKind, upstream: string, downstream: string, sense: Sense];export type FlowStyle =
  | "direct" | "computed" | "aggregated" | "condition" | "member" | "identifies" | "joins" | "secures" | "formats" | "other";
export type Language = "mdx" | "dax" | "sql" | "m";

export interface NodeData {
  k: number;
  n: string;
  o?: number;
  q?: string;
  p?: string;
  e?: string;
  l?: Language;
  d?: string;
  b?: number;
  t?: string;
  a?: string;
  h?: number;
  v?: string;
  u?: OpenNameData[];
  s?: (number | string)[];
  r?: number;
  w?: string;
  x?: Record<string, string>;
}

/** Whether the definition has it elsewhere, has it nowhere, or speaks of what is outside. */
export type OpenNameState = "exists" | "mistake" | "beyond";
export type OpenNameData = [name: string, state: OpenNameState, note: string];

export interface HierarchyData {
  o: number;
  n: string;
  l: [name: string, attribute: number][];
}

export interface DataSourceData {
  n: string;
  s?: string;
  d?: string;
  c?: string;
}

export type CoverageFigures = [total: number, reached: number, countingRows: number];

export interface CoverageData {
  n: number;
  a: CoverageFigures;
  m: CoverageFigures;
  k: CoverageFigures;
}

export interface ReportData {
  format: string;
  program: string;
  database: string;
  source: string;
  dialect: "multidimensional" | "tabular";
  counts: [label: string, count: number][];
  kinds: KindData[];
  edgeKinds: EdgeKindData[];
  nodes: NodeData[];
  edges: number[];
  settingNames: string[];
  edgeTexts: string[];
  hierarchies: HierarchyData[];
  dataSources: DataSourceData[];
  coverage: CoverageData[];
  /** Missing where the document has no details. */
  passedOver?: [what: string, count: number, hasMeaning: number][];
}

/** What a database counts as its measures. Copies in cubes are the same measures again. */
export const kMeasureKinds: Kind[] = ["measure", "calculatedMeasure"];

/** For the relation that trees show without a word. */
const kUnnamedRelation = { sources: "taken over from", dependents: "taken over by" };

/** Half a surrogate pair: it is no character, and cannot stand in an address. */
const kHalfCharacter = /[\ud800-\udbff](?![\udc00-\udfff])|(?<![\ud800-\udbff])[\udc00-\udfff]/;
const kFormat = "xmla-report/2";
const kEdgeSize = 4;
/** The last number of an edge: two bits, and above them the place of its text, from 1 on. */
const kFound = 1;
const kReplaces = 2;
const kEdgeTextShift = 2;

/** Lists of numbers, one for each node, in two arrays. */
class Lists {
  private readonly starts: Uint32Array;
  private readonly items: Uint32Array;

  /** `owners[i]` is the node in whose list `i` stands; a negative one means none. */
  constructor(nodeCount: number, owners: Int32Array) {
    this.starts = new Uint32Array(nodeCount + 1);
    let total = 0;
    for (const owner of owners) {
      if (owner < 0) continue;
      this.starts[owner + 1]!++;
      total++;
    }
    for (let i = 0; i < nodeCount; i++) this.starts[i + 1]! += this.starts[i]!;
    this.items = new Uint32Array(total);
    const next = this.starts.slice();
    owners.forEach((owner, item) => {
      if (owner >= 0) this.items[next[owner]!++] = item;
    });
  }

  of(node: number): Uint32Array {
    return this.items.subarray(this.starts[node], this.starts[node + 1]);
  }
}

const kValueStyles: Record<EdgeKind, FlowStyle> = {
  direct: "direct", reads: "direct", fills: "direct", aggregated: "aggregated", counted: "aggregated",
};

/** Many kinds of relations look alike: what matters is what they do. */
function flowStyle(kind: EdgeKind, sense: Sense): FlowStyle {
  switch (sense) {
    case "gives": return kValueStyles[kind] ?? "computed";
    case "narrows": return "condition";
    case "shows": return "member";
    default: return sense;
  }
}

export interface Edge {
  from: number;
  to: number;
  kind: EdgeKind;
  /** How it is drawn. */
  style: FlowStyle;
  /** Found by the graph where neither model nor details have it: through the name that only a cube gives to a dimension, or a link. */
  found: boolean;
  /** Stands in place of one that the model has. */
  replaces: boolean;
  /** What it says beside its kind. */
  text: string;
}

export interface Setting {
  name: string;
  value: string;
}

/** Settings are spelled in several ways: "FormatString", "formatString", "FORMAT_STRING". */
function settingKey(name: string): string {
  return name.replace(/[_ ]/g, "").toLowerCase();
}

export class Model {
  readonly nodeCount: number;
  /** How far up each kind of relation stands in lists: those that give values first. */
  private readonly ranks = new Map<EdgeKind, number>();
  private readonly styles: FlowStyle[];
  private readonly containerKinds = new Set<Kind>();
  private readonly kindRows: Map<Kind, KindData>;
  private readonly edgeRows: Map<EdgeKind, EdgeKindData>;
  private readonly children: Lists;
  private readonly incoming: Lists;
  private readonly outgoing: Lists;
  private readonly byKind = new Map<Kind, number[]>();
  private readonly byPath = new Map<string, number>();
  private readonly hierarchiesByOwner = new Map<number, HierarchyData[]>();

  constructor(readonly data: ReportData) {
    if (data.format !== kFormat) throw new Error(`The report data is in format ${data.format}, not ${kFormat}.`);
    const { nodes, edges } = data;
    this.kindRows = new Map(data.kinds.map((row) => [row[0], row]));
    this.edgeRows = new Map(data.edgeKinds.map((row) => [row[0], row]));
    this.styles = data.edgeKinds.map(([name, , , sense], i) => {
      this.ranks.set(name, i + (sense === "gives" ? 0 : data.edgeKinds.length));
      return flowStyle(name, sense);
    });
    // A perspective owns nothing, and yet is what it shows.
    for (const [name, , , hasParts] of data.kinds) if (hasParts === 1 || name === "perspective") this.containerKinds.add(name);
    this.nodeCount = nodes.length;
    const edgeCount = edges.length / kEdgeSize;
    const owners = Int32Array.from(nodes, (node) => node.o ?? -1);
    const from = new Int32Array(edgeCount);
    const to = new Int32Array(edgeCount);
    for (let i = 0; i < edgeCount; i++) {
      from[i] = edges[kEdgeSize * i]!;
      to[i] = edges[kEdgeSize * i + 1]!;
    }
    this.children = new Lists(nodes.length, owners);
    this.incoming = new Lists(nodes.length, to);
    this.outgoing = new Lists(nodes.length, from);
    nodes.forEach((node, id) => {
      // What the model left out does not count among its objects. It has a page all the same.
      if (node.b !== 1) this.addByKind(this.kind(id), id);
      if (node.p && !this.byPath.has(node.p)) this.byPath.set(node.p, id);
    });
    for (const hierarchy of data.hierarchies) {
      const list = this.hierarchiesByOwner.get(hierarchy.o);
      if (list) list.push(hierarchy);
      else this.hierarchiesByOwner.set(hierarchy.o, [hierarchy]);
    }
  }

  private addByKind(kind: Kind, id: number): void {
    const list = this.byKind.get(kind);
    if (list) list.push(id);
    else this.byKind.set(kind, [id]);
  }

  node(id: number): NodeData {
    return this.data.nodes[id]!;
  }
  /** What an object is called. A part of a KPI is only one together with its KPI: "Profit Goal". */
  name(id: number): string {
    const { n, o } = this.node(id);
    return o !== undefined && this.kind(id) === "kpiValue" ? `${this.node(o).n} ${n}` : n;
  }
  kind(id: number): Kind {
    return this.data.kinds[this.node(id).k]![0];
  }
  /** What people call its kind. */
  kindLabel(id: number): string {
    return this.data.kinds[this.node(id).k]![1];
  }
  /** Whether the model itself has no such object. What it has stands in its counts and trees. */
  isInDetailsOnly(id: number): boolean {
    return this.data.kinds[this.node(id).k]![4] === 1;
  }
  kindsInDetailsOnly(): Kind[] {
    return this.data.kinds.flatMap((row) => row[4] === 1 ? [row[0]] : []);
  }
  /** The words for objects of a kind, or undefined when there is no such kind. */
  kindWords(kind: Kind): { one: string; many: string } | undefined {
    const row = this.kindRows.get(kind);
    return row && { one: row[1], many: row[2] };
  }
  /** Whether an object stands for all its parts: a table, a dimension, a cube. */
  isContainer(id: number): boolean {
    return this.containerKinds.has(this.kind(id));
  }
  /** The objects below one, parts of parts included, in the order of a text that nests them, each with its depth. */
  below(id: number): { id: number; depth: number }[] {
    const found: { id: number; depth: number }[] = [];
    const open = [{ id, depth: -1 }];
    for (let at = open.pop(); at !== undefined; at = open.pop()) {
      if (at.depth >= 0) found.push(at);
      for (const part of Array.from(this.parts(at.id)).reverse()) open.push({ id: part, depth: at.depth + 1 });
    }
    return found;
  }
  belowOfKind(id: number, ...kinds: Kind[]): number[] {
    return this.below(id).flatMap((at) => kinds.includes(this.kind(at.id)) ? [at.id] : []);
  }

  settings(id: number): Setting[] {
    const flat = this.node(id).s ?? [];
    return Array.from({ length: flat.length / 2 }, (_, i) =>
      ({ name: this.data.settingNames[flat[2 * i] as number]!, value: flat[2 * i + 1] as string }));
  }
  /** The first setting that has one of the names, however they are spelled. */
  setting(id: number, ...names: string[]): string | undefined {
    const keys = names.map(settingKey);
    return this.settings(id).find(({ name }) => keys.includes(settingKey(name)))?.value;
  }

  kindRank(id: number): number {
    return this.node(id).k;
  }
  rank(edge: Edge): number {
    return this.ranks.get(edge.kind)!;
  }
  /** The words of a relation, for a list of what an object names, or of what names it. */
  edgeWords(kind: EdgeKind, direction: "sources" | "dependents"): string {
    const row = this.edgeRows.get(kind)!;
    return (direction === "sources" ? row[1] : row[2]) || kUnnamedRelation[direction];
  }
  /** The objects that name one in relations of a kind, and those that one names so. */
  namedBy(id: number, kind: EdgeKind): number[] {
    return this.edgesInto(id).flatMap((edge) => edge.kind === kind ? [edge.from] : []);
  }
  naming(id: number, kind: EdgeKind): number[] {
    return this.edgesOutOf(id).flatMap((edge) => edge.kind === kind ? [edge.to] : []);
  }

  /** The measures that a cube lists. Values of KPIs stand among them, and are none. */
  measuresOf(cube: number): number[] {
    return this.partsOfKind(cube, "cubeMeasure").filter((id) => this.kind(this.original(id)) !== "kpiValue");
  }

  ofKind(...kinds: Kind[]): number[] {
    return kinds.flatMap((kind) => this.byKind.get(kind) ?? []);
  }
  /** The names in its expression that are in one of the states. */
  openNames(id: number, ...states: OpenNameState[]): OpenNameData[] {
    return (this.node(id).u ?? []).filter(([, state]) => states.includes(state));
  }
  /** The objects whose expressions have such names. */
  withOpenNames(...states: OpenNameState[]): number[] {
    return this.data.nodes.flatMap((_, id) => this.openNames(id, ...states).length > 0 ? [id] : []);
  }
  /** The node at a path, or undefined. Of several, the first. */
  atPath(path: string): number | undefined {
    return this.byPath.get(path);
  }
  parts(id: number): Uint32Array {
    return this.children.of(id);
  }
  partsOfKind(id: number, ...kinds: Kind[]): number[] {
    return Array.from(this.parts(id)).filter((part) => kinds.includes(this.kind(part)));
  }
  hierarchies(dimension: number): HierarchyData[] {
    return this.hierarchiesByOwner.get(dimension) ?? [];
  }
  get edgeCount(): number {
    return this.data.edges.length / kEdgeSize;
  }
  edge(number: number): Edge {
    const { edges, edgeKinds, edgeTexts } = this.data;
    const at = kEdgeSize * number;
    const marks = edges[at + 3]!;
    return {
      from: edges[at]!, to: edges[at + 1]!, kind: edgeKinds[edges[at + 2]!]![0], style: this.styles[edges[at + 2]!]!,
      found: (marks & kFound) !== 0, replaces: (marks & kReplaces) !== 0,
      text: edgeTexts[(marks >>> kEdgeTextShift) - 1] ?? "",
    };
  }
  /** The edges that end in a node, or start at it. */
  edgesInto(id: number): Edge[] {
    return Array.from(this.incoming.of(id), (number) => this.edge(number));
  }
  edgesOutOf(id: number): Edge[] {
    return Array.from(this.outgoing.of(id), (number) => this.edge(number));
  }

  /** The owners of a node, outermost first. */
  owners(id: number): number[] {
    const chain: number[] = [];
    for (let owner = this.node(id).o; owner !== undefined && chain.length < this.nodeCount; owner = this.node(owner).o)
      chain.push(owner);
    return chain.reverse();
  }

  /** What a measure of a cube is a copy of; every other node is its own original. */
  original(id: number): number {
    if (this.kind(id) !== "cubeMeasure") return id;
    return this.edgesInto(id).find((edge) => edge.kind === "direct")?.from ?? id;
  }

  /** Where in the page an object is shown. */
  href(id: number): string {
    const path = this.node(id).p;
    const leadsBack = path !== undefined && this.byPath.get(path) === id && !kHalfCharacter.test(path);
    return leadsBack ? "#/o/" + encodePath(path.replace(/^\//, "")) : `#/n/${id}`;
  }
}

/** Slashes stay readable; the rest is escaped as in any address. */
function encodePath(path: string): string {
  return path.split("/").map(encodeURIComponent).join("/");
}
