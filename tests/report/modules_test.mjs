// What the page works out before it shows anything: which part of a lineage is in sight, what a search finds.
// node modules_test.mjs FOLDER, with the sources of the page and the packages that build it.

import assert from "node:assert/strict";
import { createRequire } from "node:module";
import { join } from "node:path";
import test from "node:test";
import { corpus } from "./corpus.mjs";
import { edgeKindNumber, emptyModel, kindNumber } from "./mock_model.mjs";

const folder = process.argv[2];
const { build } = createRequire(join(folder, "package.json"))("esbuild");
const bundle = await build({
  stdin: {
    contents: `export * from "./model/model"; export * from "./lineage/sight"; export * from "./model/search";
      export * from "./lineage/placing";`,
    resolveDir: join(folder, "src"), loader: "ts",
  },
  bundle: true, write: false, format: "esm",
});
const { ContainerFlows, EdgeFilter, Expansion, Model, ObjectFlows, place, SearchIndex } = await import(
  `data:text/javascript;base64,${Buffer.from(bundle.outputFiles[0].contents).toString("base64")}`);

const kArrows = { ">": "direct", "+>": "computed", "?>": "condition", "*>": "member" };
const arrowOf = (kind) => Object.keys(kArrows).find((arrow) => kArrows[arrow] === kind);

/** Adds the objects and edges of a line such as "a>b c?>d" to a model. */
function addEdges(model, line, idOf) {
  for (const [, from, arrow, to] of line.matchAll(/(\w+)([+?*]?>)(\w+)/g))
    model.edges.push(idOf(from), idOf(to), edgeKindNumber(kArrows[arrow]), 0);
}

function numbering(model, kind) {
  const ids = new Map();
  return (name) => {
    if (!ids.has(name)) ids.set(name, model.nodes.push({ k: kindNumber(kind), n: name }) - 1);
    return ids.get(name);
  };
}

const written = (model) => (flow) => model.name(flow.from) + arrowOf(flow.kind) + model.name(flow.to);

function expand(input) {
  const data = emptyModel("Expansion");
  const idOf = numbering(data, "measure");
  const [edges, ...steps] = input.split("\n");
  addEdges(data, edges, idOf);
  const model = new Model(data);
  const filter = new EdgeFilter();
  let expansion;
  for (const step of steps) {
    const [word, what, ...rest] = step.split(" ");
    if (word === "root") expansion = new Expansion(idOf(what), new ObjectFlows(model, filter));
    else if (word === "open" || word === "close") expansion[word](idOf(what), rest[0]);
    else if (word === "far") expansion.openFar(what, ...rest.map(Number));
    else filter.set(what, word === "show");
    expansion.reread();
  }
  const sight = expansion.sight();
  const handles = sight.handles.flatMap(({ id, direction, open, hidden }) => [
    ...(hidden > 0 ? [`+${hidden} ${direction} of ${model.name(id)}`] : []),
    ...(open ? [`- ${direction} of ${model.name(id)}`] : [])]);
  return [sight.ids.map((id) => model.name(id)).join(" "), sight.flows.map(written(model)).join(" "), handles.join(", ")]
    .join("\n").trimEnd();
}

function containers(input) {
  const data = emptyModel("Containers");
  const idOf = numbering(data, "viewTable");
  const lines = input.split("\n");
  const [asked, direction] = lines.pop().split(" ");
  for (const line of lines) {
    const owner = /^(\w+): (.*)/.exec(line);
    if (!owner) addEdges(data, line, idOf);
    else for (const part of owner[2].split(" ")) Object.assign(data.nodes[idOf(part)], {
      o: idOf(owner[1]), k: kindNumber("viewColumn") });
  }
  const model = new Model(data);
  const flows = new ContainerFlows(model, new EdgeFilter()).beside(idOf(asked), direction);
  return flows.map((flow) => `${written(model)(flow)} x${flow.count}`).join("\n");
}

function search(input, expected) {
  const [query, ...lines] = input.split("\n");
  const data = emptyModel("Search");
  for (const line of lines) {
    const [, kind, name, qualified] = /^(\w+) (.*?)(?: = (.*))?$/.exec(line);
    data.nodes.push({ k: kindNumber(kind), n: name, ...(qualified && { q: qualified }) });
  }
  const model = new Model(data);
  const withKinds = lines.some((line) => expected.split("\n").includes(line));
  return new SearchIndex(model).find(query.slice(1), 10).ids
    .map((id) => withKinds ? `${model.kind(id)} ${model.name(id)}` : model.name(id)).join("\n");
}

function layers(input) {
  const names = [];
  const objects = [];
  const flows = [];
  let room = 0;
  for (const line of input.split("\n")) {
    const [, name, stage, width] = /^(\w+) (\d+) (\d+)$/.exec(line) ?? [];
    if (name) objects[names.push(name) - 1] = { stage: Number(stage), width: Number(width) };
    else if (line.startsWith("room ")) room = Number(line.slice("room ".length));
    else for (const [, from, to] of line.matchAll(/(\w+)>(\w+)/g))
      flows.push({ from: names.indexOf(from), to: names.indexOf(to) });
  }
  const { points } = place({ ids: objects.map((_, id) => id), flows },
    { stageOf: (id) => objects[id].stage, widthOf: (id) => objects[id].width, room });
  const byPlace = new Map();
  for (const [id, { x, width }] of points) byPlace.set(x, `${byPlace.get(x) ?? width} ${names[id]}`);
  return [...byPlace].sort(([a], [b]) => a - b).map(([, layer]) => layer).join("\n");
}

for (const [file, run] of Object.entries({
  "expansion.txt": expand, "containers.txt": containers, "search.txt": search, "layers.txt": layers })) {
  for (const { title, input, expected } of corpus(file))
    test(`${file}: ${title}`, () => assert.equal(run(input, expected), expected));
}
