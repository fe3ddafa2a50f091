// Cases as the other tests keep them: a line "=== NAME", the input, a line "---", what must come of it.

import { readFileSync } from "node:fs";

export function corpus(name) {
  const text = readFileSync(new URL(name, import.meta.url), "utf8");
  return text.split(/^=== /m).slice(1).map((part) => {
    const [, title, input, expected] = /^(.*)\n([\s\S]*?)\n?^---\n([\s\S]*)$/m.exec(part);
    return { title, input, expected: expected.trimEnd() };
  });
}
