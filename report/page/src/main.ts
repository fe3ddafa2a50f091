// Reads the model that stands in the page, makes the frame, and shows the page that the address names.

import { h } from "./elements/dom";
import { capitalized } from "./elements/parts";
import { count, nameElement, plainName } from "./elements/text";
import { startTheme, themeButton } from "./elements/theme";
import { type Kind, kMeasureKinds, Model, type ReportData } from "./model/model";
import { SearchIndex } from "./model/search";
import { coveragePage, unresolvedPage } from "./pages/findings";
import { cubesPage, dimensionsPage, kindPage, measuresPage, searchPage, tablesPage } from "./pages/lists";
import { objectPage } from "./pages/object";
import { overviewPage } from "./pages/overview";
import type { App, Page } from "./pages/page";
import { relationshipsPage } from "./pages/relationships";
import { rolesPage } from "./pages/security";
import { searchBox } from "./search_box";

function readModel(): Model {
  const text = document.getElementById("model")!.textContent!;
  return new Model(JSON.parse(text) as ReportData);
}

function missingPage(address: string): Page {
  return {
    title: "Not found",
    element: h("article", {}, h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, "Not found"),
      h("p", { class: "subtitle" }, "This report has no page at ", h("code", {}, nameElement(address)), ". ",
        h("a", { href: "#/" }, "Go to the overview")))),
  };
}

function decoded(text: string): string {
  try {
    return decodeURIComponent(text);
  } catch {
    return text;
  }
}

/** The page at an address such as "#/o/Cubes/Stays". */
function pageAt(app: App, address: string): Page {
  const [, first = "", rest = ""] = /^#?\/?([^/]*)\/?([\s\S]*)$/.exec(address)!;
  const { model } = app;
  switch (first) {
    case "": return overviewPage(app);
    case "cubes": return cubesPage(app);
    case "dimensions": return dimensionsPage(app);
    case "tables": return tablesPage(app);
    case "coverage": return coveragePage(app);
    case "unresolved": return unresolvedPage(app);
    case "search": return searchPage(app, decoded(rest));
    case "measures": return measuresPage(app);
    case "relationships": return relationshipsPage(app);
    case "roles": return rolesPage(app);
    case "kind": return model.kindWords(rest) ? kindPage(app, rest) : missingPage(address);
    case "n": {
      const id = /^\d+$/.test(rest) ? Number(rest) : model.nodeCount;
      return id < model.nodeCount ? objectPage(app, id) : missingPage(address);
    }
    case "o": {
      // A path begins with its own slash, or with the address of a database.
      const id = model.atPath(decoded(rest)) ?? model.atPath("/" + decoded(rest));
      return id === undefined ? missingPage(address) : objectPage(app, id);
    }
    default: return missingPage(address);
  }
}

/** More would push the rest out of sight; all are on their page. */
const kCubesBeside = 20;

interface Entry {
  href: string;
  label: string;
  number?: number;
}

/** Kinds with a page of their own among the entries, and those that only stand for something else. */
const kNotBeside = new Set<Kind>(["relationship", "role", "permission", "everyMeasure", "everyPartition", "dimensionUsage", "cubeHierarchy", "other"]);

/** What else a definition may hold: a list for each kind that this one has. */
function furtherEntries(model: Model): Entry[] {
  return model.kindsInDetailsOnly().filter((kind) => !kNotBeside.has(kind)).map((kind) => ({
    href: `#/kind/${kind}`, label: capitalized(model.kindWords(kind)!.many), number: model.ofKind(kind).length,
  }));
}

function navigation(model: Model): HTMLElement {
  const entries: Entry[] = [
    { href: "#/", label: "Overview" },
    { href: "#/cubes", label: "Cubes", number: model.ofKind("cube").length },
    { href: "#/measures", label: "Measures", number: model.ofKind(...kMeasureKinds).length },
    { href: "#/kind/calculatedMeasure", label: "Calculations", number: model.ofKind("calculatedMeasure").length },
    { href: "#/kind/kpi", label: "KPIs", number: model.ofKind("kpi").length },
    { href: "#/dimensions", label: "Dimensions", number: model.ofKind("dimension").length },
    { href: "#/kind/attribute", label: "Attributes", number: model.ofKind("attribute").length },
    { href: "#/tables", label: "Tables and queries", number: model.ofKind("viewTable", "namedQuery", "databaseTable").length },
    { href: "#/relationships", label: "Relationships", number: model.ofKind("relationship").length },
    { href: "#/roles", label: "Roles", number: model.ofKind("role").length },
    { href: "#/coverage", label: "Coverage" },
    { href: "#/unresolved", label: "Unresolved", number: model.withOpenNames("mistake").length },
  ];
  const further = furtherEntries(model).filter((entry) => entry.number !== 0);
  const link = (entry: Entry): HTMLElement => h("li", {}, h("a", { href: entry.href }, h("span", {}, entry.label),
    entry.number !== undefined && h("span", { class: "number" }, count(entry.number))));
  const cubes = model.ofKind("cube").slice(0, kCubesBeside).map((id) =>
    h("li", {}, h("a", { href: model.href(id) }, nameElement(model.name(id)))));
  return h("nav", { class: "side", "aria-label": "Model" },
    h("ul", {}, entries.filter((entry) => entry.number !== 0).map(link)),
    further.length > 0 && [h("h2", {}, "More"), h("ul", {}, further.map(link))],
    cubes.length > 0 && [h("h2", {}, "Cubes"), h("ul", { class: "cubes" }, cubes)]);
}

function licences(): HTMLElement {
  const text = document.getElementById("licences")!.textContent!;
  return h("details", { class: "licences" }, h("summary", {}, "Third-party licences"), h("pre", {}, text));
}

class Frame {
  private readonly main = h("main", { id: "main", tabindex: "-1" });
  private readonly side: HTMLElement;
  private page: Page | undefined;
  private address: string | undefined;
  /** Where pages were scrolled to, for the way back. */
  private readonly scrolled = new Map<string, number>();
  /** Whether the next change of the address comes from a link, and not from going back. */
  private fresh = false;
  readonly app: App;

  constructor(private readonly model: Model) {
    let index: SearchIndex | undefined;
    this.app = {
      model, search: () => (index ??= new SearchIndex(model)), open: (id) => this.go(model.href(id)),
    };
    this.side = navigation(model);
    document.body.append(
      h("a", { class: "skip", href: "#main", onclick: (event: Event) => {
        event.preventDefault();
        this.main.focus();
      } }, "Skip to content"),
      h("header", { class: "top" }, h("a", { class: "brand", href: "#/" }, nameElement(model.data.database)),
        searchBox(this.app, (query) => this.go("#/search/" + encodeURIComponent(query))), themeButton()),
      h("div", { class: "body" }, this.side, h("div", { class: "content" }, this.main,
        h("footer", {}, h("p", {}, `Made by ${model.data.program}. Self-contained: nothing is loaded from the network.`),
          licences()))),
      h("div", { id: "announcements", class: "unseen", role: "status", "aria-live": "polite" }));
    document.addEventListener("click", (event) => this.follow(event));
    addEventListener("hashchange", () => this.show(location.hash));
  }

  /** Goes to an address. In a sandbox the browser may refuse to note it; the page is shown all the same. */
  go(address: string): void {
    this.fresh = true;
    try {
      location.hash = address;
    } catch {
      // Shown below.
    }
    this.show(address);
  }

  private follow(event: MouseEvent): void {
    const elsewhere = event.ctrlKey || event.metaKey || event.shiftKey || event.altKey;
    if (event.defaultPrevented || event.button !== 0 || elsewhere) return;
    const address = (event.target as Element).closest("a")?.getAttribute("href");
    if (!address?.startsWith("#/")) return;
    event.preventDefault();
    this.go(address);
  }

  show(address: string): void {
    if (address === this.address) return;
    const first = this.address === undefined;
    if (this.address !== undefined) this.scrolled.set(this.address, scrollY);
    this.address = address;
    this.page?.detached?.();
    this.page = pageAt(this.app, address);
    this.main.replaceChildren(this.page.element);
    document.title = `${this.page.title} – ${plainName(this.model.data.database)}`;
    for (const link of this.side.querySelectorAll("a")) {
      if (link.getAttribute("href") === (address === "" ? "#/" : address)) link.setAttribute("aria-current", "page");
      else link.removeAttribute("aria-current");
    }
    this.page.attached?.();
    scrollTo(0, this.fresh ? 0 : this.scrolled.get(address) ?? 0);
    if (!first) this.main.querySelector<HTMLElement>("h1")?.focus({ preventScroll: true });
    this.fresh = false;
  }
}

function start(): void {
  startTheme();
  try {
    new Frame(readModel()).show(location.hash);
  } catch (error) {
    document.body.append(h("main", { class: "failure" }, h("h1", {}, "This report cannot be shown"),
      h("p", {}, error instanceof Error ? error.message : String(error))));
    throw error;
  }
}

start();
