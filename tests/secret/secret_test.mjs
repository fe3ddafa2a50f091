// secret_test.mjs PROGRAM all|one: a secret that stands in every text of a definition, marked § (¤ within a string of
// its language) in definition.xmla and definition.bim, in all forms or in one, is in no byte of what the program
// writes, but for the saved model. Which commands, formats and switches there are is asked of the program's own help,
// so that a new one is covered by itself.
import { execFileSync, spawn } from 'node:child_process';
import { mkdtempSync, mkdirSync, readdirSync, readFileSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { inflateSync } from 'node:zlib';

const [, , program, howMany] = process.argv;
const here = dirname(fileURLToPath(import.meta.url));
const secret = 'hunter7Sesame';
const forms = [
  `Password=${secret}`,
  `pwd=${secret};`,
  `PWD = "${secret}"`,
  `{"password": "${secret}"}`,
  `[Headers=[Authorization="${secret}", #"x-api-key"="${secret}"]] https://h.example/?subscription-key=${secret}`,
];
const definitions = [
  { file: 'definition.xmla', escape: escapeXml, names: ['Sales', 'Doubled', 'Growth', 'Amount', 'Unknown'] },
  { file: 'definition.bim', escape: escapeJson, names: ['Crossings', 'Takings', 'Quick', 'PRICE', 'Unknown'] },
];
// What the arguments and options stand for that a command cannot do without.
const values = { INPUT: 'old', 'INPUT...': 'old', OLD: 'old', NEW: 'new', NAME: 'name' };

function escapeXml(text) {
  return text.replaceAll('&', '&amp;').replaceAll('"', '&quot;').replaceAll('<', '&lt;');
}

function escapeJson(text) {
  return JSON.stringify(text).slice(1, -1);
}

function run(words, folder) {
  return new Promise((done) => {
    const child = spawn(program, words, { cwd: folder, stdio: ['ignore', 'pipe', 'pipe'] });
    const chunks = [];
    child.stdout.on('data', (chunk) => chunks.push(chunk));
    child.stderr.on('data', (chunk) => chunks.push(chunk));
    child.on('close', (code) => done({ code, bytes: Buffer.concat(chunks) }));
  });
}

async function help(...words) {
  return (await run(['help', ...words], here)).bytes.toString();
}

/** The names in the first column of a section of a help text, with what follows on their lines. */
function section(text, title) {
  const lines = text.split('\n');
  const begin = lines.indexOf(`${title}:`) + 1;
  if (begin === 0) return [];
  const end = lines.indexOf('', begin);
  return lines.slice(begin, end).filter((line) => /^ {2}\S/.test(line)).map((line) => line.trim());
}

/**
 * The choices of an option that are run. A long list of choices picks rows of the answer that is looked at whole: its
 * ends and its middle stand for it, since a run for each would be most of this test.
 */
function choicesOf(line) {
  const set = /:\{([^}]*)\}/.exec(line);
  const choices = set ? set[1].split(',') : [];
  const isFilter = choices.length > 20;
  return isFilter ? [choices[0], choices[choices.length >> 1], choices.at(-1)] : choices;
}

/** A command with its arguments, and the lists of options to run it with. */
async function describe(command) {
  const text = await help(command);
  const variants = [[]];
  let fixed = [[]];
  let output = '';
  let post = false;
  for (const line of section(text, 'Options')) {
    const name = /--[a-z-]+/.exec(line)?.[0];
    // These choose nothing of what is written.
    if (!name || name === '--help' || name === '--quiet' || name === '--fail-on') continue;
    if (name === '--output') output = name;
    post ||= name === '--post';
    const choices = choicesOf(line);
    if (line.includes('REQUIRED') && choices.length > 0) fixed = choices.map((choice) => [name, choice]);
    else if (choices.length > 0) variants.push(...choices.map((choice) => [name, choice]));
    else if (/^(-\w,)?--[a-z-]+(\s|$)(?! *[A-Z]+\b)/.test(line)) variants.push([name]);
    else if (name === '--from' || name === '--to') variants.push([name, 'name']);
    else if (name === '--out-dir') variants.push([name, 'models']);
    else if (name === '--estate') variants.push([name, 'estate']);
    else if (name === '--fail-under') variants.push([name, '100']);
  }
  const positionals = section(text, 'Positionals').map((line) => line.split(/\s/)[0]);
  return { command, positionals, variants, fixed, output, post };
}

/** Every way to call a command, as words in which "old", "new", "name" and "output" stand for themselves. */
function calls({ command, positionals, variants, fixed, output }) {
  const unknown = positionals.filter((positional) => !(positional in values));
  if (unknown.length > 0) throw new Error(`${command}: this test does not know what to give for ${unknown}`);
  return fixed.flatMap((required) => variants.map((variant) => {
    const words = [command, ...positionals.map((positional) => values[positional]), ...required, ...variant];
    return output && !variant.includes('--out-dir') && !variant.includes('--estate') ? [...words, output, 'output'] : words;
  }));
}

function filesBelow(folder) {
  return readdirSync(folder).flatMap((name) => {
    const path = join(folder, name);
    return statSync(path).isDirectory() ? filesBelow(path) : [path];
  });
}

let faults = 0;
function fault(text) {
  ++faults;
  console.error(text);
}

let outputs = 0;
let bytes = 0;

function look(what, content) {
  ++outputs;
  bytes += content.length;
  const at = content.indexOf(secret);
  if (at >= 0) fault(`${what}: ...${content.subarray(Math.max(0, at - 100), at + 40).toString()}...`);
}

/** An estate is handed on, with the documents in it. */
function lookInto(what, estate) {
  look(what, readFileSync(estate));
  const documents = execFileSync('sqlite3', [estate, 'SELECT hex(document) FROM versions'], { maxBuffer: 1 << 28 });
  for (const document of documents.toString().trim().split('\n'))
    look(`${what}: a document`, inflateSync(Buffer.from(document, 'hex')));
}

/** Runs a call with each of the names, or once if it takes none. */
async function check(words, folder, names) {
  const made = join(folder, 'made');
  for (const name of words.includes('name') ? names : ['']) {
    mkdirSync(made);
    const call = words.map((word) => {
      if (word === 'output' || word === 'models' || word === 'estate') return join(made, word);
      return word === 'name' ? name : word;
    });
    const { code, bytes: shown } = await run(call, folder);
    const shownCall = `${call.join(' ')} (exit code ${code})`;
    // Not every option goes with every format, and not every name is one.
    const isDone = [0, 2, 4, 5, 7].includes(code) || (code === 1 && words.includes('name'));
    if (!isDone) fault(`${shownCall}: ${shown.toString().slice(0, 200)}`);
    look(shownCall, shown);
    // The saved model is what the others are made from: it keeps its texts.
    if (words.includes('--estate')) lookInto(shownCall, join(made, 'estate'));
    if (words[0] !== 'import') for (const file of filesBelow(made)) look(shownCall, readFileSync(file));
    rmSync(made, { recursive: true });
  }
}

async function checkPost(folder) {
  const bodies = [];
  const server = createServer((request, response) => {
    bodies.push(request.url);
    request.on('data', (chunk) => bodies.push(chunk));
    request.on('end', () => response.writeHead(201).end());
  });
  await new Promise((done) => server.listen(0, '127.0.0.1', done));
  const url = `http://127.0.0.1:${server.address().port}/lineage`;
  const words = ['export', 'old', '--format', 'openlineage', '--post', url];
  const { code, bytes: shown } = await run(words, folder);
  server.close();
  if (code !== 0) fault(`${words.join(' ')}: exit code ${code}`);
  look('post: output', shown);
  look('post: what was sent', Buffer.concat(bodies.map((body) => Buffer.from(body))));
}

async function checkDefinition({ file, escape, names }, form) {
  const folder = mkdtempSync(join(tmpdir(), 'secret-'));
  const text = readFileSync(join(here, file), 'utf8').replaceAll('SECRET', secret);
  const plant = (planted) =>
    text.replaceAll('§', escape(planted)).replaceAll('¤', escape(planted.replaceAll('"', '""')));
  writeFileSync(join(folder, 'old.definition'), plant(form));
  writeFileSync(join(folder, 'new.definition'), plant(`x ${form}`).replaceAll('Sales', 'Sold'));
  // Messages of the import show texts, too: each command once with the definition, and then with its model.
  for (const command of described) {
    const isImport = command.command === 'import';
    for (const words of calls(isImport ? command : { ...command, variants: [['--log-format', 'json']] })) {
      const given = words.map((word) => (word === 'old' || word === 'new' ? `${word}.definition` : word));
      await check(given, folder, names.slice(0, 1));
    }
  }
  for (const name of ['old', 'new']) {
    const { code } = await run(['import', `${name}.definition`, '-o', name], folder);
    if (code !== 0) throw new Error(`${file} is no definition`);
  }
  const readers = described.filter(({ command }) => command !== 'import' && command !== 'test');
  for (const words of readers.flatMap(calls)) {
    const asked = words[0] === 'export' ? names.slice(0, 2) : [...names, 'nothing at all', form];
    await check(words, folder, asked);
  }
  await checkPost(folder);
  rmSync(folder, { recursive: true });
}

const commands = section(await help(), 'Subcommands').map((line) => line.split(/\s/)[0]);
const described = await Promise.all(commands.filter((name) => name !== 'help').map(describe));
if (!described.some(({ post }) => post)) fault('no command posts any longer');
await Promise.all(definitions.map(async (definition) => {
  for (const form of howMany === 'one' ? forms.slice(0, 1) : forms) await checkDefinition(definition, form);
}));
console.log(`${outputs} outputs of ${commands.length} commands, ${bytes} bytes, ${faults} with the secret`);
process.exit(faults === 0 ? 0 : 1);
