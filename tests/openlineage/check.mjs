// Checks the lineage events that the program exports. FOLDER is the one in which `npm ci` was run.
//
//   node check.mjs FOLDER broken FILE             FILE holds an event without fault, and changes each of which
//                                                 must be found: "at" a place, to a "value" or to nothing
//   node check.mjs FOLDER saved PROGRAM FILE...   checks the events of saved models
//   node check.mjs FOLDER program PROGRAM FILE... exports each definition in every way and checks all events
//
// Prints the faults, and fails when there are any.
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, join } from 'node:path';
import { Schemas, Stream, checkLine, originsOf } from './events.mjs';

const [folder, mode, ...rest] = process.argv.slice(2);
const schemas = new Schemas(folder);
let faults = 0;
const report = (fault) => {
  faults += 1;
  console.log(fault);
};

function faultsOf(line) {
  const found = [];
  const stream = new Stream();
  try {
    checkLine(line, schemas, stream, (fault) => found.push(fault));
    stream.end((fault) => found.push(fault));
  } catch (error) {
    found.push(`${error}`); // what is not of the right form at all may break the other checks
  }
  return found;
}

function changed(event, { at, value }) {
  const copy = structuredClone(event);
  const path = at.split('/').slice(1);
  const last = path.pop();
  const parent = path.reduce((object, key) => object[key], copy);
  if (value === undefined) delete parent[last];
  else parent[last] = value;
  return copy;
}

function checkBroken(file) {
  const { event, faults: changes } = JSON.parse(readFileSync(file, 'utf8'));
  const line = JSON.stringify(event);
  const expect = (fault, found) => {
    if (!found.some((text) => text.includes(fault))) report(`'${fault}' was not found, but ${found.join('; ')}`);
  };
  for (const fault of faultsOf(line)) report(`found without cause: ${fault}`);
  for (const change of changes) expect(change.fault, faultsOf(JSON.stringify(changed(event, change))));
  expect('a member twice', faultsOf(line.replace('{"name":"a"}', '{"name":"b","name":"a"}')));
  expect('JSON', faultsOf(line.slice(0, -1)));
}

function run(program, args) {
  const options = { encoding: 'utf8', maxBuffer: 1 << 30, env: { ...process.env, SOURCE_DATE_EPOCH: '1700000000' } };
  const { status, stdout, stderr } = spawnSync(program, [...args, '--quiet'], options);
  // A script without a definition of a database has code 3 and no events.
  if (status !== 0 && status !== 3) report(`${args.join(' ')}: exit code ${status}: ${stderr}`);
  return stdout;
}

function checkStream(text, name) {
  const stream = new Stream();
  const lines = text.split('\n').slice(0, -1);
  lines.forEach((line, i) => checkLine(line, schemas, stream, (fault) => report(`${name}:${i + 1}: ${fault}`)));
  stream.end((fault) => report(`${name}: ${fault}`));
  return stream;
}

// The objects of a model by class, and how many features of cubes and dimensions it has: levels and views apart.
// Attributes and measures that only the details have count too.
function countModel(json) {
  const counts = { datasets: 0, fields: 0 };
  const featureClasses = new Set(['TAVMeasure', 'TAVDimensionAttribute', 'TAVAliasFeature']);
  const datasetClasses = new Set(['TAVCube', 'TAVDimension', 'TAVAliasClassifier']);
  const fieldKinds = new Set(['attribute', 'measure']);
  const { model, details } = json ? JSON.parse(json) : {};
  counts.fields += (details?.items ?? []).filter((item) => fieldKinds.has(item.kind)).length;
  const open = model ? [model] : [];
  while (open.length > 0) {
    const object = open.pop();
    if (datasetClasses.has(object.class)) counts.datasets += 1;
    if (object.class === 'TAVCube') counts.datasets += (object.synonyms ?? []).length;
    if (featureClasses.has(object.class)) counts.fields += 1;
    for (const part of Object.values(object).flat()) if (part && part.class) open.push(part);
  }
  return counts;
}

function countEvents(stream) {
  const kinds = new Set(['NAMED_QUERY', 'DATA_SOURCE_VIEW_TABLE', undefined]);
  const made = stream.outputs.filter((dataset) => !kinds.has(dataset.facets.datasetType.subType));
  // Perspectives have the fields of their cubes once more.
  const owners = made.filter((dataset) => dataset.facets.datasetType.subType !== 'PERSPECTIVE');
  const fields = owners.flatMap((dataset) => dataset.facets.schema?.fields ?? []);
  return { datasets: made.length, fields: fields.length };
}

function compare(what, a, b) {
  if (JSON.stringify(a) !== JSON.stringify(b)) report(`${what}: ${JSON.stringify(a)} and ${JSON.stringify(b)}`);
}

function checkProgram(program, file, temporary) {
  const saved = join(temporary, 'model.xml');
  rmSync(saved, { force: true });
  run(program, ['import', file, '-o', saved]);
  const lineage = ['--format', 'openlineage', '--server', 'ssas://cubes.example/OLAP'];
  const name = basename(file);
  const runs = run(program, ['export', saved, ...lineage]);
  const statics = run(program, ['export', saved, ...lineage, '--openlineage-static']);
  compare(`${name}, from the definition and from the model`, run(program, ['export', file, ...lineage]), runs);

  const runStream = checkStream(runs, `${name} runs`);
  const staticStream = checkStream(statics, `${name} static`);
  const model = countModel(run(program, ['export', saved, '--format', 'json']));
  compare(`${name}, of model and runs`, model, countEvents(runStream));
  compare(`${name}, of model and static events`, model, countEvents(staticStream));
  const origins = (stream) => stream.outputs.flatMap(originsOf).length;
  compare(`${name}, origins of columns`, origins(runStream), origins(staticStream));
}

if (mode === 'broken') {
  checkBroken(rest[0]);
} else if (mode === 'saved') {
  for (const file of rest.slice(1))
    for (const options of [[], ['--openlineage-static']])
      checkStream(run(rest[0], ['export', file, '--format', 'openlineage', ...options]), basename(file));
} else {
  const temporary = mkdtempSync(join(tmpdir(), 'lineage-'));
  for (const file of rest.slice(1)) checkProgram(rest[0], file, temporary);
  rmSync(temporary, { recursive: true });
}
process.exit(faults === 0 ? 0 : 1);
