// Puts page, style and script together as files that ask nobody for anything: dist/report.html about one model, and
// dist/estate.html about several. The line that holds MODEL_LINE stands once in each; the program puts its data there.
import { createHash } from "node:crypto";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { build } from "esbuild";

const MODEL_LINE = "@MODEL@";

const common = { bundle: true, minify: true, write: false, legalComments: "eof", target: ["es2020"], charset: "utf8" };

/** The licence of each package that esbuild took code from, by the package's name. */
async function licences(inputs) {
  const folders = new Map();
  for (const path of Object.keys(inputs)) {
    const found = /^(.*node_modules\/((?:@[^/]+\/)?[^/]+))\//.exec(path);
    if (found) folders.set(found[2], found[1]);
  }
  const texts = [];
  for (const [name, folder] of [...folders].sort()) {
    const { version } = JSON.parse(await readFile(`${folder}/package.json`, "utf8"));
    texts.push(`${name} ${version}\n\n${(await readFile(`${folder}/LICENSE`, "utf8")).trim()}\n`);
  }
  return texts.join("\n\n");
}

/** Text that stands in a script element: it must not hold what ends one. */
function insideScript(text, what) {
  if (/<\/script|<!--/i.test(text)) throw new Error(`${what} would end the element that it stands in`);
  return text;
}

/** Builds the page of a script, under a title. */
async function makePage(name, entry, title) {
  const script = await build({ ...common, entryPoints: [entry], format: "iife", metafile: true });
  const style = await build({ ...common, entryPoints: ["src/style.css"] });
  const code = insideScript(`\n${script.outputFiles[0].text}`, "the script");
  const parts = new Map([
    ["TITLE", title],
    ["STYLE", style.outputFiles[0].text],
    ["SCRIPT", code],
    ["SCRIPT_HASH", createHash("sha256").update(code).digest("base64")],
    ["LICENCES", insideScript(await licences(script.metafile.inputs), "a licence")],
  ]);
  const page = (await readFile("src/index.html", "utf8")).replace(/@([A-Z_]+)@/g, (whole, part) => parts.get(part) ?? whole);
  if (page.split(MODEL_LINE).length !== 2) throw new Error(`${MODEL_LINE} does not stand exactly once in ${name}`);
  await writeFile(`dist/${name}`, page);
}

await mkdir("dist", { recursive: true });
await makePage("report.html", "src/main.ts", "Lineage report");
await makePage("estate.html", "src/estate.ts", "Reports");
