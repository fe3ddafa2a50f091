// Models for tests, as the program would write them: large ones, and ones with names that try to break out.

const containers = new Set(["databaseTable", "viewTable", "namedQuery", "dimension", "measureGroup", "linkedMeasureGroup",
  "calculations", "kpi", "cube", "cubeDimension"]);
const inModels = ["databaseTable", "databaseColumn", "viewTable", "namedQuery", "viewColumn", "computedColumn", "condition",
  "dimension", "attribute", "measureGroup", "measure", "linkedMeasureGroup", "linkedMeasure", "calculations",
  "calculatedMeasure", "kpi", "kpiValue", "cube", "cubeDimension", "cubeAttribute", "cubeMeasure", "perspective"];
const inDetails = ["relationship", "dimensionUsage", "partition", "script", "namedSet", "scope", "assignment", "role",
  "permission", "gadget"];
const words = (name) => name.replace(/[A-Z]/g, (letter) => " " + letter.toLowerCase());
const kinds = [...inModels, ...inDetails].map((name, i) =>
  [name, words(name), words(name) + "s", containers.has(name) ? 1 : 0, i < inModels.length ? 0 : 1]);
const edgeKinds = [
  ["direct", "", "", "gives"], ["computed", "uses", "used by", "gives"], ["aggregated", "aggregates", "aggregated by", "gives"],
  ["condition", "limited by", "limits", "narrows"], ["member", "shows", "shown by", "shows"],
  ["reads", "reads", "read by", "gives"], ["key", "keyed by", "key of", "identifies"], ["uses", "joined to", "joined in", "joins"],
  ["granularity", "at the granularity of", "granularity of", "joins"], ["bridge", "bridged by", "bridges", "joins"],
  ["joins", "joins", "joined by", "joins"], ["secures", "secures", "secured by", "secures"],
  ["belongs", "permits", "permission of", "secures"], ["assigns", "assigned by", "assigns", "gives"],
];

/** The number of a kind of object in the models made here. */
export function kindNumber(name) {
  return kinds.findIndex((row) => row[0] === name);
}
export function edgeKindNumber(name) {
  return edgeKinds.findIndex((row) => row[0] === name);
}

export function emptyModel(database) {
  return { format: "xmla-report/2", program: "xmla-bridge 0.0.0", database, source: "made-up.asdatabase",
    dialect: "multidimensional", counts: [], kinds, edgeKinds, nodes: [], edges: [], settingNames: [], edgeTexts: [],
    hierarchies: [], dataSources: [], coverage: [], passedOver: [] };
}

class Writer {
  constructor(database) {
    this.model = emptyModel(database);
  }
  add(kind, name, owner, more = {}) {
    const path = (owner === undefined ? `/${kind}` : this.model.nodes[owner].p) + "/" + name;
    this.model.nodes.push({ k: kindNumber(kind), n: name, ...(owner === undefined ? {} : { o: owner }), p: path, ...more });
    return this.model.nodes.length - 1;
  }
  link(from, to, kind) {
    this.model.edges.push(from, to, edgeKindNumber(kind), 0);
  }
}

/** A model from lines as in details.txt. */
export function modelFromLines(lines) {
  const writer = new Writer("Details");
  const { nodes, settingNames, edgeTexts } = writer.model;
  const idOf = (name) => nodes.findIndex((node) => node.n === name);
  const makers = [
    [/^= (.*)/, (text) => Object.assign(nodes.at(-1), { e: text, l: "mdx" })],
    [/^\? (\S+) (\w+) ?(.*)/, (...name) => (nodes.at(-1).u ??= []).push(name)],
    [/^(.+) -(\w+)-> (.+?)(?: : (.*))?$/, (from, kind, to, text) => {
      writer.link(idOf(from), idOf(to), kind);
      if (text) writer.model.edges[writer.model.edges.length - 1] = edgeTexts.push(text) << 2;
    }],
    [/^(\w+): (.*)/, (name, value) => {
      if (!settingNames.includes(name)) settingNames.push(name);
      (nodes.at(-1).s ??= []).push(settingNames.indexOf(name), value);
    }],
    [/^(\w+) (.+?)(?: of (.*))?$/, (kind, name, owner) =>
      writer.add(kind, name, owner === undefined ? undefined : idOf(owner))],
  ];
  for (const line of lines) {
    const [form, make] = makers.find(([pattern]) => pattern.test(line));
    make(...form.exec(line).slice(1));
  }
  return writer.model;
}

/** About `size` objects: tables of ten columns, dimensions and measures on them, chains of calculations. */
export function largeModel(size) {
  const writer = new Writer("Large");
  const cube = writer.add("cube", "Everything");
  const group = writer.add("measureGroup", "Facts", cube);
  const calculations = writer.add("calculations", "Calculated Measures", cube);
  let previous = -1;
  for (let t = 0; writer.model.nodes.length < size; t++) {
    const table = writer.add("databaseTable", `Fact${t}`, undefined, { q: `dbo.Fact${t}` });
    const view = writer.add("viewTable", `Fact ${t}`, undefined, { q: `dbo.Fact${t}`, v: "Warehouse" });
    const dimension = writer.add("dimension", `Dimension ${t}`);
    for (let c = 0; c < 10; c++) {
      const column = writer.add("databaseColumn", `Column${t}_${c}`, table, { t: "INTEGER" });
      const seen = writer.add("viewColumn", `Column${t}_${c}`, view, { t: "INTEGER" });
      const attribute = writer.add("attribute", `Attribute ${t} ${c}`, dimension, { r: 1 });
      writer.link(column, seen, "direct");
      writer.link(seen, attribute, "direct");
      const measure = writer.add("measure", `Measure ${t} ${c}`, group, { r: 1, a: "Sum" });
      writer.link(seen, measure, "aggregated");
      const calculated = writer.add("calculatedMeasure", `Ratio ${t} ${c}`, calculations,
        { r: 1, e: `IIF([Measures].[Measure ${t} ${c}] = 0, NULL, 1) -- ${c}`, l: "mdx" });
      writer.link(measure, calculated, "computed");
      if (previous >= 0) writer.link(previous, calculated, "computed");
      previous = calculated;
      const shown = writer.add("cubeMeasure", `Ratio ${t} ${c}`, cube, { r: 1 });
      writer.link(calculated, shown, "direct");
      writer.link(shown, cube, "member");
    }
  }
  return writer.model;
}

export const hostileNames = [
  "<script>alert(1)</script>", "</script><script>alert(2)</script>", "<img src=x onerror=alert(3)>", "\"quoted\" & 'single'",
  "right\u202eto left", "isolated\u2066open", "__proto__", "constructor", "", " spaces  inside ", "line\nbreak", "%2F/..%00/#?&",
  "half \ud800 pair", "x".repeat(5000), "<!-- <!--", "javascript:alert(4)",
];

/** Every hostile name as a name, a description, an expression, a property; around a cycle with a self edge. */
export function hostileModel() {
  const writer = new Writer("Hostile <b>\u202eesabatad</b>");
  const cube = writer.add("cube", hostileNames[0]);
  const calculations = writer.add("calculations", hostileNames[1], cube);
  const measures = hostileNames.map((name) => {
    const made = writer.add("calculatedMeasure", name, calculations,
      { d: name, e: `"${name}" + [${name}] -- ${name}`, l: "mdx", u: [[name, "mistake", name]], r: 0, w: name });
    // As JSON gives it: a property, not the prototype.
    writer.model.nodes[made].x = JSON.parse(`{${JSON.stringify(name)}: ${JSON.stringify(name)}}`);
    const shown = writer.add("cubeMeasure", name, cube);
    writer.link(made, shown, "direct");
    writer.link(shown, cube, "member");
    return made;
  });
  measures.forEach((measure, i) => writer.link(measures[(i + 1) % measures.length], measure, "computed"));
  writer.link(measures[0], measures[0], "computed");
  writer.model.dataSources.push({ n: hostileNames[0], s: hostileNames[1], d: hostileNames[2], c: hostileNames[3] });
  writer.model.counts.push([hostileNames[0], 1]);
  return writer.model;
}

/** The page with a model in it, as the program makes it. */
export function pageWith(template, model) {
  return template.replace("@MODEL@", () => JSON.stringify(model).replace(/</g, "\\u003c"));
}
