// Checks files of events, one event a line, against the schemas beside this script: every event as a whole,
// every facet against the schema that it names, formats included, and what no schema can say.
//
//   node validate.mjs FOLDER FILE...            prints the faults; fails when there are any
//   node validate.mjs FOLDER --broken FILE...   the events of the files are broken: each is followed by a line
//                                               "# " with a part of what must be found
//
// FOLDER is the one in which `npm ci` was run.
import { readFileSync, readdirSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const [folder, ...rest] = process.argv.slice(2);
const installed = createRequire(join(folder, 'package.json'));
const Ajv = installed('ajv/dist/2020').default;
const addFormats = installed('ajv-formats').default;

const schemas = fileURLToPath(new URL('schemas/', import.meta.url));
const readSchema = (name) => JSON.parse(readFileSync(join(schemas, name), 'utf8'));

// No loadSchema: a reference that does not lead to one of these schemas is an error, not a request.
const ajv = new Ajv({ allErrors: true, strict: true, strictTypes: false, strictRequired: false });
addFormats(ajv, { mode: 'full' });
ajv.addVocabulary(['example']);
const core = readSchema('OpenLineage.json');
ajv.addSchema(core);
const facetKeys = new Map(); // by the URL of a facet's schema: the key under which the facet stands
for (const file of readdirSync(join(schemas, 'facets'))) {
  const schema = readSchema(join('facets', file));
  ajv.addSchema(schema);
  for (const [key, { $ref }] of Object.entries(schema.properties)) if ($ref) facetKeys.set(schema.$id + $ref, key);
}

const validateEvent = ajv.getSchema(core.$id);

function checkSchema(validate, value, where, report) {
  if (validate(value)) return;
  for (const error of validate.errors) report(`${where}${error.instancePath}: ${error.message}`);
}

function checkFacets(facets, kind, where, report) {
  for (const [key, facet] of Object.entries(facets ?? {})) {
    const url = facet._schemaURL;
    if (facetKeys.get(url) !== key) {
      report(`${where}/${key}: no schema of this facet: ${url}`);
    } else if (!url.endsWith(`${kind}Facet`)) {
      report(`${where}/${key}: not a facet of a ${kind}`);
    } else {
      checkSchema(ajv.getSchema(url), facet, `${where}/${key}`, report);
    }
  }
}

const keyOf = ({ namespace, name }) => JSON.stringify([namespace, name]);

// What a stream has told of its datasets so far, and where columns come from, for the check at its end.
class Stream {
  fields = new Map(); // by dataset: its fields, or null where none are told
  origins = [];
  made = new Set();
  runs = new Set();

  dataset(dataset, where, report) {
    const facets = dataset.facets ?? {};
    for (const part of ['namespace', 'name']) if (!dataset[part]) report(`${where}: an empty ${part}`);
    checkFacets(facets, 'Dataset', `${where}/facets`, report);
    const key = keyOf(dataset);
    if (!this.fields.has(key)) this.fields.set(key, null);
    if (!facets.schema) return;
    const names = facets.schema.fields.map((field) => field.name);
    if (this.fields.get(key)) report(`${where}: its schema is told twice`);
    if (new Set(names).size < names.length) report(`${where}: two fields of one name`);
    if (names.includes('')) report(`${where}: a field without a name`);
    this.fields.set(key, new Set(names));
  }

  lineage(dataset, where, report) {
    const lineage = dataset.facets?.columnLineage;
    if (!lineage) return;
    for (const [field, { inputFields }] of Object.entries(lineage.fields)) {
      if (!this.fields.get(keyOf(dataset))?.has(field)) report(`${where}: lineage of the unknown field '${field}'`);
      this.origins.push(...inputFields.map((input) => ({ input, where })));
    }
    this.origins.push(...(lineage.dataset ?? []).map((input) => ({ input, where })));
  }

  event(event, where, report) {
    if (event.run) {
      checkFacets(event.run.facets, 'Run', `${where}/run/facets`, report);
      if (this.runs.has(event.run.runId)) report(`${where}: a second event of one run`);
      this.runs.add(event.run.runId);
    }
    if (event.job) {
      checkFacets(event.job.facets, 'Job', `${where}/job/facets`, report);
      if (!event.job.namespace || !event.job.name) report(`${where}: a job without a name`);
      if (this.made.has(keyOf(event.job))) report(`${where}: a second event of one job`);
      this.made.add(keyOf(event.job));
    }
    const told = [...(event.inputs ?? []), ...(event.outputs ?? []), ...(event.dataset ? [event.dataset] : [])];
    for (const dataset of told) this.dataset(dataset, `${where}: ${dataset.name}`, report);
    for (const dataset of told) this.lineage(dataset, `${where}: ${dataset.name}`, report);
    if (!event.run) return;
    const inputs = new Set(event.inputs.map(keyOf));
    for (const { columnLineage } of event.outputs.map((output) => output.facets ?? {})) {
      const origins = Object.values(columnLineage?.fields ?? {}).flatMap((field) => field.inputFields);
      for (const origin of [...origins, ...(columnLineage?.dataset ?? [])])
        if (!inputs.has(keyOf(origin))) report(`${where}: comes from '${origin.name}', which is no input`);
    }
  }

  end(report) {
    for (const { input, where } of this.origins)
      if (!this.fields.get(keyOf(input))?.has(input.field))
        report(`${where}: comes from '${input.field}' of '${input.name}', which no event tells of`);
  }
}

function checkLine(line, where, stream, report) {
  let event;
  try {
    event = JSON.parse(line);
  } catch (error) {
    return report(`${where}: ${error.message}`);
  }
  // A member that is written twice is lost in parsing.
  if (JSON.stringify(event).length !== line.length) report(`${where}: not as JSON is written, or a member twice`);
  checkSchema(validateEvent, event, where, report);
  const kind = event.run ? 'RunEvent' : event.job ? 'JobEvent' : 'DatasetEvent';
  if (event.schemaURL !== `${core.$id}#/$defs/${kind}`) report(`${where}: schemaURL is not that of a ${kind}`);
  stream.event(event, where, report);
}

const linesOf = (file) => readFileSync(file, 'utf8').split('\n').slice(0, -1);

function checkFile(file, report) {
  const stream = new Stream();
  const lines = linesOf(file);
  if (lines.length === 0) report(`${file}: no events`);
  lines.forEach((line, i) => checkLine(line, `${file}:${i + 1}`, stream, report));
  stream.end(report);
}

function checkBroken(file, report) {
  const lines = linesOf(file);
  for (let i = 0; i + 1 < lines.length; i += 2) {
    const faults = [];
    const stream = new Stream();
    try {
      checkLine(lines[i], `${file}:${i + 1}`, stream, (fault) => faults.push(fault));
      stream.end((fault) => faults.push(fault));
    } catch (error) {
      faults.push(error.message);
    }
    const wanted = lines[i + 1].replace(/^# /, '');
    if (!faults.some((fault) => fault.includes(wanted)))
      report(`${file}:${i + 1}: '${wanted}' was not found; found: ${faults.join('; ') || 'nothing'}`);
  }
}

let faults = 0;
const report = (fault) => {
  faults += 1;
  console.log(fault);
};
if (rest[0] === '--broken') rest.slice(1).forEach((file) => checkBroken(file, report));
else rest.forEach((file) => checkFile(file, report));
process.exit(faults === 0 ? 0 : 1);
