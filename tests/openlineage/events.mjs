// What lineage events have to be: valid by the schemas beside this file, every event as a whole and every facet
// by the schema that it names, formats included; and what no schema can say of a stream of them.
import { readFileSync, readdirSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const schemas = fileURLToPath(new URL('schemas/', import.meta.url));
const readSchema = (name) => JSON.parse(readFileSync(join(schemas, name), 'utf8'));
const coreSchema = readSchema('OpenLineage.json');

const keyOf = ({ namespace, name }) => JSON.stringify([namespace, name]);
const lineageOf = (dataset) => dataset.facets?.columnLineage;
/** All input fields of a dataset's column lineage, with those that concern it as a whole. */
export const originsOf = (dataset) => [
  ...Object.values(lineageOf(dataset)?.fields ?? {}).flatMap((field) => field.inputFields),
  ...(lineageOf(dataset)?.dataset ?? []),
];

/** Checks by schema. `folder` is the one in which `npm ci` was run. */
export class Schemas {
  #ajv;
  #facetKeys = new Map(); // by the URL of a facet's schema: the key under which the facet stands

  constructor(folder) {
    const installed = createRequire(join(folder, 'package.json'));
    const Ajv = installed('ajv/dist/2020').default;
    // Without loadSchema: a reference that leads to none of these schemas is an error, not a request.
    this.#ajv = new Ajv({ allErrors: true, strict: true, strictTypes: false, strictRequired: false });
    installed('ajv-formats').default(this.#ajv, { mode: 'full' });
    this.#ajv.addVocabulary(['example']);
    this.#ajv.addSchema(coreSchema);
    for (const file of readdirSync(join(schemas, 'facets'))) this.#addFacet(readSchema(join('facets', file)));
  }

  #addFacet(schema) {
    this.#ajv.addSchema(schema);
    for (const [key, { $ref }] of Object.entries(schema.properties))
      if ($ref) this.#facetKeys.set(schema.$id + $ref, key);
  }

  checkEvent(event, report) {
    this.#check(coreSchema.$id, event, '', report);
    const kind = event.run ? 'RunEvent' : event.job ? 'JobEvent' : 'DatasetEvent';
    if (event.schemaURL !== `${coreSchema.$id}#/$defs/${kind}`) report(`schemaURL is not that of a ${kind}`);
    const datasets = [...(event.inputs ?? []), ...(event.outputs ?? []), ...(event.dataset ? [event.dataset] : [])];
    this.#checkFacets(event.run?.facets, 'Run', report);
    this.#checkFacets(event.job?.facets, 'Job', report);
    for (const dataset of datasets) this.#checkFacets(dataset.facets, 'Dataset', report);
  }

  #checkFacets(facets, kind, report) {
    for (const [key, facet] of Object.entries(facets ?? {})) {
      const url = facet._schemaURL;
      if (this.#facetKeys.get(url) !== key) report(`${key}: no schema of this facet: ${url}`);
      else if (!url.endsWith(`${kind}Facet`)) report(`${key}: not a facet of a ${kind}`);
      else this.#check(url, facet, key, report);
    }
  }

  #check(url, value, where, report) {
    const validate = this.#ajv.getSchema(url);
    if (!validate(value)) for (const error of validate.errors) report(`${where}${error.instancePath} ${error.message}`);
  }
}

/** Checks what the events of one stream say together. */
export class Stream {
  fields = new Map(); // by dataset: its fields, or null where no event tells them
  outputs = [];
  #jobs = new Set();
  #runs = new Set();

  add(event, report) {
    const { inputs = [], outputs = [], dataset } = event;
    const once = (seen, key, what) => {
      if (seen.has(key)) report(`a second event of one ${what}`);
      seen.add(key);
    };
    if (event.run) once(this.#runs, event.run.runId, 'run');
    if (event.job) once(this.#jobs, keyOf(event.job), 'job');
    const made = dataset ? [dataset] : outputs;
    for (const named of [...inputs, ...made, ...(event.job ? [event.job] : [])])
      if (!named.namespace || !named.name) report('an empty name or namespace');
    for (const told of [...inputs, ...outputs, ...(dataset ? [dataset] : [])]) this.#addDataset(told, report);
    for (const told of made) this.#checkLineage(told, report);
    if (!event.run) return;
    const known = new Set(inputs.map(keyOf));
    for (const origin of made.flatMap(originsOf))
      if (!known.has(keyOf(origin))) report(`comes from '${origin.name}', which is no input`);
  }

  #addDataset(dataset, report) {
    const key = keyOf(dataset);
    if (!this.fields.has(key)) this.fields.set(key, null);
    if (!dataset.facets) return;
    const names = (dataset.facets.schema?.fields ?? []).map((field) => field.name);
    if (this.fields.get(key)) report(`${dataset.name} is described twice`);
    if (new Set(names).size < names.length) report(`${dataset.name} has two fields of one name`);
    if (names.includes('')) report(`${dataset.name} has a field without a name`);
    this.fields.set(key, new Set(names));
  }

  #checkLineage(dataset, report) {
    for (const field of Object.keys(lineageOf(dataset)?.fields ?? {}))
      if (!this.fields.get(keyOf(dataset)).has(field)) report(`lineage of the unknown field '${field}'`);
    if (dataset.facets) this.outputs.push(dataset);
  }

  /** To be called behind the last event: columns may come from datasets that are told of later. */
  end(report) {
    for (const [dataset, fields] of this.fields) if (!fields) report(`${dataset} is never described`);
    for (const origin of this.outputs.flatMap(originsOf))
      if (!this.fields.get(keyOf(origin))?.has(origin.field))
        report(`comes from '${origin.field}' of '${origin.name}', of which no event tells`);
  }
}

/** Checks one line and gives its event, or null. */
export function checkLine(line, schemas, stream, report) {
  let event;
  try {
    event = JSON.parse(line);
  } catch (error) {
    report(error.message);
    return null;
  }
  // A member that is written twice is lost in parsing.
  if (JSON.stringify(event).length !== line.length) report('a member twice, or not as JSON is written');
  schemas.checkEvent(event, report);
  stream.add(event, report);
  return event;
}
