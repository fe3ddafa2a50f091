// sarif.mjs MODULES PROGRAM SCHEMA INPUT...: holds what check writes as SARIF against the schema.
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";

const [modules, program, schemaFile, ...inputs] = process.argv.slice(2);
const require = createRequire(join(modules, "package.json"));
const Ajv = require("ajv");
const ajv = new Ajv({ strict: false, allErrors: true });
require("ajv-formats")(ajv);
// The schema is in an older draft, whose keywords mean the same here but for its own name.
const { id, ...schema } = JSON.parse(readFileSync(schemaFile, "utf8"));
const validate = ajv.compile({ ...schema, $id: id, $schema: "http://json-schema.org/draft-07/schema#" });

const text = execFileSync(program, ["--quiet", "check", "--format", "sarif", "--fail-on", "never", ...inputs], {
  encoding: "utf8",
});
const outcome = JSON.parse(text);
if (!validate(outcome)) {
  console.error(JSON.stringify(validate.errors, null, 1));
  process.exit(1);
}
const results = outcome.runs[0].results;
const prints = new Set(results.map((result) => JSON.stringify(result.partialFingerprints)));
if (results.length === 0 || prints.size !== results.length) {
  console.error(`${results.length} results have ${prints.size} fingerprints`);
  process.exit(1);
}
console.log(`${results.length} results hold`);
