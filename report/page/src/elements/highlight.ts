// Colours for expressions. Prism cuts a text into tokens; what is shown is made of text nodes.

import Prism from "prismjs/components/prism-core";
import type { Grammar, Token, TokenStream } from "prismjs";
import type { Language } from "../model/model";
import { h } from "./dom";
import { appendText } from "./text";

Prism.manual = true;

/** What is longer is shown without colours: it is not read by eye any more. */
const kLongest = 50_000;

const kCStyleComments = /\/\*[\s\S]*?(?:\*\/|$)|(?:\/\/|--).*/;

function words(list: string, flags = "i"): RegExp {
  return new RegExp(`\\b(?:${list.trim().split(/\s+/).join("|")})\\b`, flags);
}

const kMdx: Grammar = {
  comment: { pattern: kCStyleComments, greedy: true },
  name: { pattern: /&?\[(?:[^\]]|\]\])*\]/, greedy: true },
  string: { pattern: /"(?:[^"]|"")*"|'(?:[^']|'')*'/, greedy: true },
  keyword: words(`SELECT FROM WHERE WITH MEMBER SET AS ON ROWS COLUMNS NON EMPTY CASE WHEN THEN ELSE END AND OR NOT XOR IS
    NULL CREATE CURRENTCUBE CALCULATE SCOPE THIS EXISTING PROPERTIES DIMENSION CELL VISIBLE FORMAT_STRING`),
  function: /\b[a-z_]\w*(?=\s*\()|(?<=\.)[a-z_]\w*/i,
  number: /\b\d+(?:\.\d+)?(?:e[+-]?\d+)?\b/i,
  operator: /<>|<=|>=|[-+*/=<>^:]/,
};

const kDax: Grammar = {
  comment: { pattern: kCStyleComments, greedy: true },
  string: { pattern: /"(?:[^"]|"")*"/, greedy: true },
  table: { pattern: /'(?:[^']|'')*'/, greedy: true },
  name: { pattern: /\[(?:[^\]]|\]\])*\]/, greedy: true },
  keyword: words("VAR RETURN EVALUATE DEFINE MEASURE ORDER BY ASC DESC IN NOT TRUE FALSE"),
  function: /\b[a-z_][\w.]*(?=\s*\()/i,
  number: /\b\d+(?:\.\d+)?(?:e[+-]?\d+)?\b/i,
  operator: /&&|\|\||<>|<=|>=|==|[-+*/=<>&^]/,
};

const kSql: Grammar = {
  comment: { pattern: /\/\*[\s\S]*?(?:\*\/|$)|--.*/, greedy: true },
  string: { pattern: /N?'(?:[^']|'')*'/i, greedy: true },
  name: { pattern: /\[(?:[^\]]|\]\])*\]|"(?:[^"]|"")*"|`[^`]*`/, greedy: true },
  keyword: words(`SELECT FROM WHERE GROUP BY ORDER HAVING DISTINCT TOP AS ON INNER LEFT RIGHT FULL OUTER CROSS APPLY JOIN
    UNION ALL EXCEPT INTERSECT WITH CASE WHEN THEN ELSE END AND OR NOT IN EXISTS BETWEEN LIKE IS NULL ASC DESC OVER
    PARTITION VALUES LIMIT OFFSET FETCH NEXT ROWS ONLY PIVOT UNPIVOT FOR`),
  function: /\b[a-z_]\w*(?=\s*\()/i,
  number: /\b\d+(?:\.\d+)?(?:e[+-]?\d+)?\b/i,
  operator: /<>|!=|<=|>=|\|\||[-+*/%=<>&|^]/,
};

const kM: Grammar = {
  comment: { pattern: /\/\*[\s\S]*?(?:\*\/|$)|\/\/.*/, greedy: true },
  name: { pattern: /#"(?:[^"]|"")*"/, greedy: true },
  string: { pattern: /"(?:[^"]|"")*"/, greedy: true },
  keyword: [
    /#(?:binary|date|datetime|datetimezone|duration|table|time|sections|shared)\b/,
    words("let in each if then else try otherwise type as is meta section shared and or not error null true false", ""),
  ],
  function: /\b[A-Za-z_][\w.]*(?=\s*\()/,
  number: /\b\d+(?:\.\d+)?(?:e[+-]?\d+)?\b/i,
  operator: /=>|<>|<=|>=|\.\.|[-+*/=<>&?@]/,
};

const kGrammars: Record<Language, Grammar> = { mdx: kMdx, dax: kDax, sql: kSql, m: kM };
const kLanguageNames: Record<Language, string> = { mdx: "MDX", dax: "DAX", sql: "SQL", m: "M" };

export function languageName(language: Language | undefined): string {
  return language === undefined ? "text" : kLanguageNames[language];
}

function appendTokens(parent: Node, stream: TokenStream): void {
  for (const token of Array.isArray(stream) ? stream : [stream]) {
    if (typeof token === "string") appendText(parent, token);
    else parent.appendChild(tokenElement(token));
  }
}

function tokenElement(token: Token): HTMLElement {
  const element = h("span", { class: `t-${token.type}` });
  appendTokens(element, token.content);
  return element;
}

/** A text in colours, as an element that keeps its direction to itself. */
export function highlighted(text: string, language: Language | undefined): HTMLElement {
  const code = h("code", { dir: "ltr" });
  if (language === undefined || text.length > kLongest) appendText(code, text);
  else appendTokens(code, Prism.tokenize(text, kGrammars[language]));
  return code;
}
