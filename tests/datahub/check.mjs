// Checks the proposals that the program exports. FOLDER is the one in which `npm ci` was run.
//
//   node check.mjs FOLDER SCHEMA broken FILE             FILE holds proposals without fault, and changes each of
//                                                        which must be found: the "proposal" by its place, "at" a
//                                                        place of it or of its aspect, to a "value" or to nothing
//   node check.mjs FOLDER SCHEMA program PROGRAM FILE... exports each definition in two ways and checks both
//
// Prints the faults, and fails when there are any.
import { spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { basename, join } from 'node:path';

const [folder, schemaFile, mode, ...rest] = process.argv.slice(2);
const installed = createRequire(join(folder, 'package.json'));
const Ajv = installed('ajv/dist/2020').default;
const ajv = new Ajv({ allErrors: true, strict: true, strictTypes: false, strictRequired: false });
const schema = JSON.parse(readFileSync(schemaFile, 'utf8'));
ajv.addSchema(schema);
const checkSchema = (place, value, where, report) => {
  const validate = ajv.getSchema(schema.$id + place);
  if (!validate(value)) for (const error of validate.errors) report(`${where}${error.instancePath} ${error.message}`);
};
const datasetOfField = (urn) => urn.slice('urn:li:schemaField:('.length, urn.lastIndexOf(','));
const unescaped = (text) => text.replace(/%(2[589Cc])/g, (_, code) => String.fromCharCode(parseInt(code, 16)));
const fieldOf = (urn) => unescaped(urn.slice(urn.lastIndexOf(',') + 1, -1));

let faults = 0;
const report = (fault) => {
  faults += 1;
  console.log(fault);
};

/** The aspects of one file by entity, each checked by its schema. */
function readProposals(text, found) {
  const proposals = JSON.parse(text);
  checkSchema('', proposals, '', found);
  const entities = new Map();
  for (const { entityUrn, aspectName, aspect } of proposals) {
    const value = JSON.parse(aspect.value);
    if (JSON.stringify(value).length !== aspect.value.replace(/:1\.0([,}])/g, ':1$1').length)
      found(`${entityUrn} ${aspectName}: a member twice`);
    checkSchema(`#/$defs/aspects/${aspectName}`, value, `${entityUrn} ${aspectName}`, found);
    const aspects = entities.get(entityUrn) ?? new Map();
    if (aspects.has(aspectName)) found(`${entityUrn} ${aspectName}: told twice`);
    entities.set(entityUrn, aspects.set(aspectName, value));
  }
  return entities;
}

/** What no schema can say: what is referred to is there. */
function checkTogether(entities, found) {
  const fields = new Map();
  for (const [urn, aspects] of entities) {
    const names = (aspects.get('schemaMetadata')?.fields ?? []).map((field) => field.fieldPath);
    if (new Set(names).size < names.length) found(`${urn} has two fields of one name`);
    fields.set(urn, new Set(names));
  }
  for (const [urn, aspects] of entities) {
    const parent = aspects.get('container')?.container;
    if (parent && !entities.has(parent)) found(`${urn} is in a container of which nothing tells`);
    const lineage = aspects.get('upstreamLineage') ?? { upstreams: [], fineGrainedLineages: [] };
    const upstreams = new Set(lineage.upstreams.map((upstream) => upstream.dataset));
    for (const { upstreams: sources, downstreams } of lineage.fineGrainedLineages) {
      for (const source of sources) {
        const dataset = datasetOfField(source);
        if (!upstreams.has(dataset)) found(`${urn} comes from a field of ${dataset}, which does not feed it`);
        if (entities.has(dataset) && !fields.get(dataset).has(fieldOf(source))) found(`there is no field ${source}`);
      }
      for (const target of downstreams)
        if (datasetOfField(target) !== urn || !fields.get(urn).has(fieldOf(target)))
          found(`${urn} has no field ${target}`);
    }
  }
}

function faultsOf(text) {
  const list = [];
  const found = (fault) => list.push(fault);
  try {
    checkTogether(readProposals(text, found), found);
  } catch (error) {
    found(`${error}`); // what is not of the right form at all may break the other checks
  }
  return list;
}

function changed(proposals, { proposal, at, value }) {
  const copy = structuredClone(proposals);
  const path = at.split('/').slice(1);
  const last = path.pop();
  const parent = path.reduce((object, key) => object[key], copy[proposal]);
  if (value === undefined) delete parent[last];
  else parent[last] = value;
  return copy;
}

function checkBroken(file) {
  const { proposals, faults: changes } = JSON.parse(readFileSync(file, 'utf8'));
  // In the file aspects are written as what they are, so that people can read them.
  const written = (list) =>
    JSON.stringify(
      list.map(({ aspect, ...other }) => ({
        ...other,
        aspect: { value: JSON.stringify(aspect), contentType: 'application/json' },
      })),
    );
  for (const fault of faultsOf(written(proposals))) report(`found without cause: ${fault}`);
  for (const change of changes) {
    const found = faultsOf(written(changed(proposals, change)));
    if (!found.some((text) => text.includes(change.fault)))
      report(`'${change.fault}' was not found, but ${found.join('; ')}`);
  }
  if (faultsOf(written([...proposals, proposals[0]])).length === 0) report('the same aspect twice was not found');
}

function checkProgram(program, file, options) {
  const args = ['export', file, '--format', 'datahub', '--quiet', ...options];
  const environment = { ...process.env, SOURCE_DATE_EPOCH: '1700000000' };
  const { status, stdout, stderr } = spawnSync(program, args, {
    encoding: 'utf8',
    maxBuffer: 1 << 30,
    env: environment,
  });
  // A script without a definition of a database has code 3 and no proposals.
  if (status === 3) return;
  if (status !== 0) report(`${args.join(' ')}: exit code ${status}: ${stderr}`);
  else for (const fault of faultsOf(stdout)) report(`${basename(file)} ${options.join(' ')}: ${fault}`);
}

if (mode === 'broken') checkBroken(rest[0]);
else
  for (const file of rest.slice(1))
    for (const options of [[], ['--datahub-tables', '--datahub-env', 'DEV', '--datahub-instance', 'ssas://localhost=olap']])
      checkProgram(rest[0], file, options);
process.exit(faults === 0 ? 0 : 1);
