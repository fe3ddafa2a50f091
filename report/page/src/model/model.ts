// What the program writes into the page, and the look-ups over it. A node is known by its number.

export type Kind =
  | "databaseTable" | "databaseColumn" | "viewTable" | "namedQuery" | "viewColumn" | "computedColumn" | "condition"
  | "dimension" | "attribute" | "measureGroup" | "measure" | "linkedMeasureGroup" | "linkedMeasure"
  | "calculations" | "calculatedMeasure" | "kpi" | "kpiValue" | "cube" | "cubeDimension" | "cubeAttribute"
  | "cubeMeasure" | "perspective";
export type EdgeKind = "direct" | "computed" | "aggregated" | "condition" | "member";
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
  t?: string;
  a?: string;
  h?: number;
  v?: string;
  u?: string[];
  r?: number;
  w?: string;
  x?: Record<string, string>;
}

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

export interface CoverageData {
  n: number;
  a: [total: number, reached: number, byModel: number];
  m: [total: number, reached: number, byModel: number, countingRows: number];
}

export interface ReportData {
  format: string;
  program: string;
  database: string;
  source: string;
  dialect: "multidimensional" | "tabular";
  counts: [label: string, count: number][];
  kinds: Kind[];
  edgeKinds: EdgeKind[];
  nodes: NodeData[];
  edges: number[];
  hierarchies: HierarchyData[];
  dataSources: DataSourceData[];
  coverage: CoverageData[];
}

/** Half a surrogate pair: it is no character, and cannot stand in an address. */
const kHalfCharacter = /[\ud800-\udbff](?![\udc00-\udfff])|(?<![\ud800-\udbff])[\udc00-\udfff]/;
const kFormat = "xmla-report/1";
const kEdgeSize = 4;

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

export interface Edge {
  from: number;
  to: number;
  kind: EdgeKind;
  /** Found by the graph where the model has no edge: through the name that only a cube gives to a dimension, or a link. */
  found: boolean;
}

export class Model {
  readonly nodeCount: number;
  private readonly children: Lists;
  private readonly incoming: Lists;
  private readonly outgoing: Lists;
  private readonly byKind = new Map<Kind, number[]>();
  private readonly byPath = new Map<string, number>();
  private readonly hierarchiesByOwner = new Map<number, HierarchyData[]>();

  constructor(readonly data: ReportData) {
    if (data.format !== kFormat) throw new Error(`The report data is in format ${data.format}, not ${kFormat}.`);
    const { nodes, edges } = data;
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
      const kind = this.kind(id);
      const list = this.byKind.get(kind);
      if (list) list.push(id);
      else this.byKind.set(kind, [id]);
      if (node.p && !this.byPath.has(node.p)) this.byPath.set(node.p, id);
    });
    for (const hierarchy of data.hierarchies) {
      const list = this.hierarchiesByOwner.get(hierarchy.o);
      if (list) list.push(hierarchy);
      else this.hierarchiesByOwner.set(hierarchy.o, [hierarchy]);
    }
  }

  node(id: number): NodeData {
    return this.data.nodes[id]!;
  }
  name(id: number): string {
    return this.node(id).n;
  }
  kind(id: number): Kind {
    return this.data.kinds[this.node(id).k]!;
  }
  ofKind(...kinds: Kind[]): number[] {
    return kinds.flatMap((kind) => this.byKind.get(kind) ?? []);
  }
  /** The objects whose expressions name what was not found. */
  withUnresolved(): number[] {
    return this.data.nodes.flatMap((node, id) => node.u && node.u.length > 0 ? [id] : []);
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
    const { edges, edgeKinds } = this.data;
    const at = kEdgeSize * number;
    return { from: edges[at]!, to: edges[at + 1]!, kind: edgeKinds[edges[at + 2]!]!, found: (edges[at + 3]! & 1) === 1 };
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
