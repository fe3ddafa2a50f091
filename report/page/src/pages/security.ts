// Roles and what they permit: a matrix of all, and the lists on the pages of roles and of what is secured.

import { type Child, h } from "../elements/dom";
import { badge, codeBlock, objectLink, placedLink, section, settingsInShort, table, titled } from "../elements/parts";
import { count, counted } from "../elements/text";
import type { Model } from "../model/model";
import type { App, Page } from "./page";

/** More columns cannot be read. */
const kMostRoles = 12;

function rolesOf(model: Model, permission: number): number[] {
  const named = model.namedBy(permission, "belongs");
  const owner = model.node(permission).o;
  return named.length === 0 && owner !== undefined && model.kind(owner) === "role" ? [owner] : named;
}

/** What a permission is about: what holds it, or the tables that it names. The single columns and members that it
 * narrows that to stand on its own page. */
function securedBy(model: Model, permission: number): number[] {
  const owner = model.node(permission).o;
  if (owner !== undefined && model.kind(owner) !== "role") return [owner];
  const named = model.namedBy(permission, "secures");
  const whole = named.filter((id) => model.isContainer(id));
  return whole.length > 0 ? whole : named;
}

function permitted(model: Model, permission: number): Child {
  const { e, l } = model.node(permission);
  return [settingsInShort(model, permission) ?? (!e && "permitted"), e && codeBlock(e, l, 3),
    h("a", { class: "place", href: model.href(permission) }, "permission")];
}

function permissionTable(model: Model, title: string, head: string, ids: number[],
  others: (permission: number) => number[]): Child {
  if (ids.length === 0) return null;
  return section(titled(title, ids.length), table({
    label: title, rows: ids, filterText: (id) => others(id).map((other) => model.name(other)).join(" "),
    columns: [
      { title: head, cell: (id) => others(id).map((other) => placedLink(model, other)) },
      { title: "Permits", class: "wide", cell: (id) => permitted(model, id) },
    ],
  }));
}

/** What a role permits. */
export function permissionsOfRole(model: Model, role: number): Child {
  const ids = new Set([...model.naming(role, "belongs"), ...model.partsOfKind(role, "permission")]);
  return permissionTable(model, "Permissions", "On", Array.from(ids), (id) => securedBy(model, id));
}

/** Which roles may do what with an object or its parts. */
export function rolesOn(model: Model, id: number): Child {
  const own = [id, ...model.below(id).map((part) => part.id)];
  const ids = new Set(own.flatMap((one) => model.naming(one, "secures")));
  for (const one of own) if (model.kind(one) === "permission") ids.add(one);
  return permissionTable(model, "Roles and permissions", "Role and object", Array.from(ids),
    (permission) => [...rolesOf(model, permission), ...securedBy(model, permission).filter((one) => one !== id)]);
}

function cells(model: Model): Map<number, Map<number, number[]>> {
  const rows = new Map<number, Map<number, number[]>>();
  for (const permission of model.ofKind("permission")) {
    for (const object of securedBy(model, permission)) {
      const row = rows.get(object) ?? new Map<number, number[]>();
      rows.set(object, row);
      for (const role of rolesOf(model, permission)) row.set(role, [...row.get(role) ?? [], permission]);
    }
  }
  return rows;
}

function matrix(model: Model, roles: number[]): Child {
  const rows = cells(model);
  if (rows.size === 0) return null;
  return section(titled("Permissions", rows.size), table({
    label: "permissions", rows: Array.from(rows.keys()), filterText: (id) => model.name(id),
    columns: [
      { title: "Object", class: "fixed", cell: (id) => placedLink(model, id) },
      ...roles.map((role) => ({ title: objectLink(model, role), class: "usage", cell: (id: number): Child =>
        rows.get(id)!.get(role)?.map((permission) => permitted(model, permission)) ?? h("span", { class: "none" }, "–") })),
    ],
  }));
}

export function rolesPage({ model }: App): Page {
  const roles = model.ofKind("role");
  return {
    title: "Roles",
    element: h("article", {},
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, "Roles"),
        h("p", { class: "subtitle" }, counted(roles.length, "role"))),
      section(titled("Roles", roles.length), table({
        label: "roles", rows: roles, filterText: (id) => model.name(id),
        columns: [
          { title: "Role", cell: (id) => [objectLink(model, id), model.node(id).h === 1 && badge("hidden")] },
          { title: "Settings", cell: (id) => settingsInShort(model, id) },
          { title: "Permissions", class: "figure", cell: (id) => count(model.naming(id, "belongs").length) },
        ],
      })),
      roles.length <= kMostRoles && matrix(model, roles)),
  };
}
