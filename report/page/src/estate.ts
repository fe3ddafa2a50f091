// The page in front of the reports of several models: the models, what they share, and a search over all of them.

import { h } from "./elements/dom";
import { kindMark } from "./elements/kind_mark";
import { coverageBar, section, table, titled } from "./elements/parts";
import { count, counted, nameElement, plainName } from "./elements/text";
import { startTheme, themeButton } from "./elements/theme";
import type { CoverageFigures, Kind } from "./model/model";

interface EstateModel {
  /** Its name, unlike those of all others. */
  n: string;
  /** The file of its report, as a relative address. */
  f: string;
  /** What it was read from. */
  i: string;
  cubes: number;
  a: CoverageFigures;
  m: CoverageFigures;
  /** Names in its expressions that nothing has. */
  open: number;
  /** The models that it is over. */
  over: number[];
}

interface EstateData {
  program: string;
  kinds: { name: Kind; label: string }[];
  models: EstateModel[];
  /** Inputs that could not be read, and why. */
  failed: [input: string, cause: string][];
  /** Tables of databases that several models read. */
  tables: [path: string, models: number[]][];
  /** What there is to find; null where that is more than one page holds. */
  names: Name[] | null;
}

type Name = [kind: number, name: string, model: number, path: string];

const kMostFound = 200;

class Estate {
  /** By place in names. */
  private folded: string[] | undefined;

  constructor(private readonly data: EstateData) {}

  element(): HTMLElement {
    const { models } = this.data;
    return h("main", { id: "main", class: "estate" },
      h("header", { class: "page-head" }, h("h1", {}, counted(models.length, "model")),
        h("p", { class: "subtitle" }, "Each has a report of its own; this page leads there.")),
      this.search(), this.failed(), this.models(), this.over(), this.tables());
  }

  private model(place: number): HTMLElement {
    const { n, f } = this.data.models[place]!;
    return h("a", { href: f }, nameElement(n));
  }

  private modelList(places: number[]): HTMLElement {
    return h("ul", { class: "chips" }, places.map((place) => h("li", {}, this.model(place))));
  }

  private search(): HTMLElement {
    const { names } = this.data;
    if (!names) return section("Search", h("p", { class: "note" },
      "The models have more names together than one page holds: search in their reports."));
    const found = h("div", { role: "status" });
    return section("Search", h("input", { type: "search", class: "estate-search", "aria-label": "Search all models",
      placeholder: "Cubes, dimensions, attributes, measures of all models", autocomplete: "off", spellcheck: "false",
      oninput: (event: Event) => found.replaceChildren(...this.found((event.target as HTMLInputElement).value)) }), found);
  }

  private found(text: string): Node[] {
    const { kinds, names, models } = this.data;
    const words = text.toLowerCase().split(/\s+/).filter((word) => word !== "");
    if (words.length === 0) return [];
    this.folded ??= names!.map(([, name]) => name.toLowerCase());
    const rows = names!.filter((_, i) => words.every((word) => this.folded![i]!.includes(word)));
    // A name that begins so comes before one that only holds it.
    const begins = ([, name]: Name): boolean => name.toLowerCase().startsWith(words[0]!);
    const ordered = [...rows.filter(begins), ...rows.filter((row) => !begins(row))].slice(0, kMostFound);
    const number = h("p", { class: "note" }, counted(rows.length, "object"),
      rows.length > kMostFound && `, of which ${count(kMostFound)} are shown`);
    if (rows.length === 0) return [number];
    return [number, table({ label: "objects found", rows: ordered, columns: [
      { title: "Name", sort: ([, name]) => name, cell: ([kind, name, model, path]) => h("a", { class: "object-link",
        href: models[model]!.f + "#/o" + path.split("/").map(encodeURIComponent).join("/") },
      kindMark(kinds[kind]!.name), h("span", { class: "unseen" }, kinds[kind]!.label + " "), nameElement(name)) },
      { title: "Kind", sort: ([kind]) => kinds[kind]!.label, cell: ([kind]) => kinds[kind]!.label },
      { title: "Model", sort: ([, , model]) => models[model]!.n, cell: ([, , model]) => this.model(model) },
    ] })];
  }

  private failed(): HTMLElement | false {
    const { failed } = this.data;
    return failed.length > 0 && section(titled("Not read", failed.length), table({ label: "inputs that were not read", rows: failed,
      columns: [{ title: "Input", cell: ([input]) => nameElement(input) }, { title: "Cause", cell: ([, cause]) => nameElement(cause) }] }));
  }

  private models(): HTMLElement {
    const rows = this.data.models.map((_, place) => place);
    const of = (place: number): EstateModel => this.data.models[place]!;
    const share = ({ a, m }: EstateModel): number => (a[0] + m[0] === 0 ? 1 : (a[1] + m[1]) / (a[0] + m[0]));
    const sum = (key: "a" | "m"): CoverageFigures => this.data.models.reduce<CoverageFigures>(
      ([all, reached, rows], model) => [all + model[key][0], reached + model[key][1], rows + model[key][2]], [0, 0, 0]);
    return section(titled("Models", rows.length),
      coverageBar("Attributes", sum("a")), coverageBar("Measures", sum("m")),
      table({ label: "models", rows, filterText: (place) => `${of(place).n} ${of(place).i}`, columns: [
        { title: "Model", sort: (place) => of(place).n, cell: (place) => this.model(place) },
        { title: "Cubes", class: "figure", sort: (place) => of(place).cubes, cell: (place) => count(of(place).cubes) },
        { title: "Attributes", class: "figure", sort: (place) => of(place).a[0], cell: (place) => count(of(place).a[0]) },
        { title: "Measures", class: "figure", sort: (place) => of(place).m[0], cell: (place) => count(of(place).m[0]) },
        { title: "Traced back", class: "figure", sort: (place) => share(of(place)), cell: (place) => `${Math.floor(100 * share(of(place)))} %` },
        { title: "Unresolved", class: "figure", sort: (place) => of(place).open, cell: (place) => count(of(place).open) },
        { title: "Read from", sort: (place) => of(place).i, cell: (place) => h("span", { class: "file" }, nameElement(of(place).i)) },
      ] }));
  }

  private over(): HTMLElement | false {
    const rows = this.data.models.map((_, place) => place).filter((place) => this.data.models[place]!.over.length > 0);
    return rows.length > 0 && section(titled("Models over other models", rows.length), table({ label: "models over other models", rows,
      columns: [{ title: "Model", cell: (place) => this.model(place) },
        { title: "Reads", cell: (place) => this.modelList(this.data.models[place]!.over) }] }));
  }

  private tables(): HTMLElement {
    const { tables } = this.data;
    if (tables.length === 0)
      return section("Shared tables", h("p", { class: "note" }, "No two models read the same table of a database."));
    return section(titled("Shared tables", tables.length), table({ label: "shared tables", rows: tables,
      filterText: ([path, models]) => `${path} ${models.map((place) => this.data.models[place]!.n).join(" ")}`, columns: [
        { title: "Table", sort: ([path]) => path, cell: ([path]) => nameElement(path) },
        { title: "Models", class: "figure", sort: ([, models]) => models.length, cell: ([, models]) => count(models.length) },
        { title: "Read by", cell: ([, models]) => this.modelList(models) },
      ] }));
  }
}

function start(): void {
  startTheme();
  const data = JSON.parse(document.getElementById("model")!.textContent!) as EstateData;
  document.title = plainName(counted(data.models.length, "model"));
  document.body.append(
    h("header", { class: "top estate-top" }, h("span", { class: "brand" }, "Estate"), themeButton()),
    h("div", { class: "estate-body" }, new Estate(data).element(),
      h("footer", {}, h("p", {}, `Made by ${data.program}. Self-contained: nothing is loaded from the network.`),
        h("details", { class: "licences" }, h("summary", {}, "Third-party licences"),
          h("pre", {}, document.getElementById("licences")!.textContent!)))));
}

start();
