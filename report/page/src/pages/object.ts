// The page of one object.

import { type Child, fragment, h } from "../elements/dom";
import { kindMark } from "../elements/kind_mark";
import {
  aggregation, badge, capitalized, codeBlock, codeTitle, type Column, description, facts, objectLink, placedLink, section,
  settingsInShort, settingsSection, table, titled, valueElement,
} from "../elements/parts";
import { count, counted, nameElement, percent, plainName } from "../elements/text";
import { LineagePanel } from "../lineage/panel";
import type { Edge, Kind, Model } from "../model/model";
import { cubeSections } from "./cube";
import { kOpenNameStates, openNames } from "./open_names";
import type { App, Page } from "./page";
import { relations, shown } from "./relations";
import { relationshipsOf } from "./relationships";
import { statements } from "./script";
import { permissionsOfRole, rolesOn } from "./security";

function breadcrumbs(model: Model, id: number): HTMLElement {
  return h("nav", { class: "breadcrumbs", "aria-label": "Breadcrumb" }, h("ol", {},
    h("li", {}, h("a", { href: "#/" }, nameElement(model.data.database))),
    model.owners(id).map((owner) => h("li", {}, h("a", { href: model.href(owner) }, nameElement(model.name(owner)))))));
}

function badges(model: Model, id: number): Child {
  const node = model.node(id);
  const unresolved = model.openNames(id, "mistake").length;
  return [
    node.h === 1 && badge("hidden"),
    node.b === 1 && badge("not in the model"),
    node.r === 1 && badge("traces back to a column", "good"),
    node.r === 0 && badge("does not reach a column", "bad"),
    unresolved > 0 && badge(counted(unresolved, "unresolved reference"), "bad"),
  ];
}

function factList(model: Model, id: number): HTMLElement {
  const node = model.node(id);
  const original = model.original(id);
  return facts([
    ["Kind", model.kindLabel(id)],
    ["Copy of", original !== id && placedLink(model, original)],
    ["Qualified name", node.q && h("code", {}, nameElement(node.q))],
    ["Path", node.p && h("code", {}, nameElement(node.p))],
    ["Data source view", node.v && nameElement(node.v)],
    ["Type", node.t],
    ["Aggregation", aggregation(model, id)],
    ["Lineage gap", node.w],
    ["Open names", openNames(model, id, ...kOpenNameStates)],
    ...Object.entries(node.x ?? {}).map(([key, value]): [string, Child] => [plainName(key), valueElement(value)]),
  ]);
}

function expression(model: Model, id: number): Child {
  const { e, l } = model.node(model.original(id));
  return e && section(codeTitle(l), codeBlock(e, l, 8));
}

function hierarchies(model: Model, id: number): Child {
  const list = model.hierarchies(id);
  if (list.length === 0) return null;
  return section(titled("Hierarchies", list.length), h("ul", { class: "plain hierarchies" }, list.map((hierarchy) =>
    h("li", {}, h("h3", {}, nameElement(hierarchy.n)), h("ol", { class: "levels" }, hierarchy.l.map(([name, attribute]) =>
      h("li", {}, attribute < 0 ? nameElement(name) : h("a", { href: model.href(attribute) }, nameElement(name)))))))));
}

/** Kinds whose lists stand elsewhere on the page of what holds them. */
const kShownElsewhere: Record<Kind, Kind[]> = {
  dimension: ["hierarchy"], script: ["*"], scope: ["*"],
  cube: ["cubeMeasure", "kpi", "cubeDimension", "measureGroup", "linkedMeasureGroup", "calculations", "perspective", "script",
    "permission", "everyMeasure", "everyPartition"],
};

/** The parts of an object, a table for each kind. */
function parts(model: Model, id: number): Child {
  const elsewhere = kShownElsewhere[model.kind(id)] ?? [];
  if (elsewhere.includes("*")) return null;
  const byKind = new Map<Kind, number[]>();
  for (const part of model.parts(id)) {
    const kind = model.kind(part);
    if (elsewhere.includes(kind)) continue;
    const list = byKind.get(kind);
    if (list) list.push(part);
    else byKind.set(kind, [part]);
  }
  return Array.from(byKind, ([kind, ids]) => {
    const { many } = model.kindWords(kind)!;
    return section(titled(capitalized(many), ids.length), table({
      label: many, rows: ids, columns: partColumns(model, ids),
      filterText: (part) => `${model.name(part)} ${model.node(part).d ?? ""}`,
    }));
  });
}

function partColumns(model: Model, ids: number[]): Column<number>[] {
  const has = (test: (id: number) => unknown): boolean => ids.some((id) => Boolean(test(id)));
  const columns: Column<number>[] = [{ title: "Name", cell: (id) => [objectLink(model, id),
    model.node(id).h === 1 && badge("hidden"), model.node(id).b === 1 && badge("not in the model"),
    model.node(id).r === 0 && badge("no column", "bad"), description(model, id)] }];
  if (has((id) => model.node(id).e)) columns.push({ title: "Expression", class: "wide", cell: (id) => {
    const { e, l } = model.node(id);
    return e && codeBlock(e, l, 3);
  } });
  if (has((id) => model.node(id).a)) columns.push({ title: "Aggregation", cell: (id) => aggregation(model, id) });
  if (has((id) => model.node(id).t)) columns.push({ title: "Type", cell: (id) => model.node(id).t });
  columns.push(...settingColumns(model, ids));
  columns.push({ title: "Used by", class: "figure", cell: (id) => count(model.edgesOutOf(id).length + model.parts(id).length) });
  return columns;
}

/** Of what the details alone hold, its settings are what it is; of the rest only those that people look for. */
function settingColumns(model: Model, ids: number[]): Column<number>[] {
  if (ids.every((id) => model.isInDetailsOnly(id)))
    return ids.some((id) => model.node(id).s) ? [{ title: "Settings", cell: (id) => settingsInShort(model, id) }] : [];
  const looked: [title: string, ...names: string[]][] = [["Format", "FormatString"], ["Folder", "DisplayFolder"]];
  return looked.flatMap(([title, ...names]) => ids.some((id) => model.setting(id, ...names))
    ? [{ title, cell: (id: number): Child => nameElement(model.setting(id, ...names) ?? "") }] : []);
}

function coverageNote(model: Model, id: number): Child {
  const row = model.data.coverage.find((candidate) => candidate.n === id);
  return row && h("p", { class: "subtitle" },
    `Trace back to a database column: ${percent(row.a[1], row.a[0])} of ${counted(row.a[0], "attribute")}, ` +
    `${percent(row.m[1], row.m[0])} of ${counted(row.m[0], "measure")}`);
}

/** Whether an edge tells what a cube or perspective shows, which stands elsewhere on its page. */
function isShown(id: number): (edge: Edge) => boolean {
  return (edge) => edge.kind === "member" && edge.to === id;
}

function permissions(model: Model, id: number): Child {
  return model.kind(id) === "role" ? permissionsOfRole(model, id) : model.kind(id) === "dimension" && rolesOn(model, id);
}

export function objectPage(app: App, id: number): Page {
  const { model } = app;
  const node = model.node(id);
  const kind = model.kind(id);
  const panel = new LineagePanel(model, id, app.open);
  const head = h("header", { class: "page-head" }, breadcrumbs(model, id),
    h("div", { class: "title" },
      h("h1", { tabindex: "-1" }, kindMark(kind), h("span", { class: "unseen" }, model.kindLabel(id) + " "), nameElement(model.name(id))),
      h("p", { class: "badges" }, badge(model.kindLabel(id)), badges(model, id))),
    coverageNote(model, id),
    node.d && h("p", { class: "lead" }, nameElement(node.d)));
  const about = section("About", factList(model, id));
  const body = kind === "cube"
    ? fragment(cubeSections(model, id), parts(model, id), rolesOn(model, id), panel.element,
      h("div", { class: "two-columns" }, h("div", {}, about, settingsSection(model, id)),
        h("div", {}, relations(model, id, isShown(id)))))
    : fragment(expression(model, id), kind === "script" || kind === "scope" ? statements(model, id) : null, panel.element,
      h("div", { class: "two-columns" },
        h("div", {}, about, settingsSection(model, id), hierarchies(model, id), permissions(model, id), parts(model, id),
          kind === "dimension" && relationshipsOf(model, id)),
        kind === "perspective" ? h("div", {}, shown(model, id), relations(model, id, isShown(id))) : h("div", {}, relations(model, id))));
  return {
    title: plainName(model.name(id)),
    element: h("article", { class: "object-page" }, head, body),
    attached: () => panel.attached(),
    detached: () => panel.detached(),
  };
}
