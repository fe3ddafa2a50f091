// How the tables of a tabular model are joined: a drawing, and the list that says the same.

import { Graph, layout } from "@dagrejs/dagre";
import { type Child, h, svg } from "../elements/dom";
import { badge, objectLink, placedLink, section, settingsInShort, table, titled } from "../elements/parts";
import { count, counted, fitted, plainName } from "../elements/text";
import type { Model } from "../model/model";
import type { App, Page } from "./page";

/** What can still be read; the layout takes longer with every table, too. */
const kMostTables = 80;
const kMostDrawn = 240;
const kWidth = 168;
const kHeight = 34;
const kMargin = 8;
const kLoopRise = 30;
const kTextWidth = kWidth - 22;
const kFont = '600 13px "Segoe UI", "Helvetica Neue", "Noto Sans", "DejaVu Sans", Arial, sans-serif';

interface Relationship {
  id: number;
  /** The columns that it joins; a broken one may lack either. */
  from: number | undefined;
  to: number | undefined;
  active: boolean;
}

function relationshipOf(model: Model, id: number): Relationship {
  const ends = model.edgesInto(id).filter((edge) => edge.kind === "joins");
  const from = ends.find((edge) => edge.text !== "to");
  return {
    id, from: from?.from, to: ends.find((edge) => edge !== from)?.from,
    active: model.setting(id, "isActive", "active")?.toLowerCase() !== "false",
  };
}

function tableOf(model: Model, column: number): number {
  return model.node(column).o ?? column;
}

interface Point {
  x: number;
  y: number;
}

interface Joined {
  from: number;
  to: number;
  active: boolean;
  names: string[];
}

/** Tables that several relationships join have one line. */
function joinsOf(model: Model, relationships: Relationship[]): Joined[] {
  const byEnds = new Map<string, Joined>();
  for (const { from: fromColumn, to: toColumn, active } of relationships) {
    if (fromColumn === undefined || toColumn === undefined) continue;
    const from = tableOf(model, fromColumn);
    const to = tableOf(model, toColumn);
    const joined = byEnds.get(`${from} ${to}`) ?? { from, to, active: false, names: [] };
    byEnds.set(`${from} ${to}`, joined);
    joined.active ||= active;
    joined.names.push(`${plainName(model.name(fromColumn))} → ${plainName(model.name(toColumn))}${active ? "" : " (inactive)"}`);
  }
  return Array.from(byEnds.values());
}

interface Placed {
  boxes: Map<number, Point>;
  /** Where each line goes: from the right side of a box, through the gaps between others, to the left side of another. */
  ways: Point[][];
}

function place(joins: Joined[]): Placed {
  const graph = new Graph();
  graph.setGraph({ rankdir: "LR", nodesep: 14, ranksep: 90 });
  graph.setDefaultEdgeLabel(() => ({}));
  for (const id of new Set(joins.flatMap(({ from, to }) => [from, to]))) graph.setNode(String(id), { width: kWidth, height: kHeight });
  for (const { from, to } of joins) if (from !== to) graph.setEdge(String(from), String(to));
  layout(graph);
  const boxes = new Map(graph.nodes().map((node) => [Number(node), graph.node(node) as Point]));
  const ways = joins.map(({ from, to }) => {
    const start = boxes.get(from)!;
    const end = boxes.get(to)!;
    if (from === to) return [{ x: start.x + kWidth / 2, y: start.y }];
    const { points } = graph.edge(String(from), String(to)) as { points: Point[] };
    return [{ x: start.x + kWidth / 2, y: start.y }, ...points.slice(1, -1), { x: end.x - kWidth / 2, y: end.y }];
  });
  return { boxes, ways };
}

/** Lines may pass above and below all boxes. */
function frame({ boxes, ways }: Placed): { x: number; y: number; width: number; height: number } {
  const box = { left: 0, top: 0, right: 0, bottom: 0 };
  const include = ({ x, y }: Point, dx: number, dy: number): void => {
    box.left = Math.min(box.left, x - dx);
    box.right = Math.max(box.right, x + dx);
    box.top = Math.min(box.top, y - dy);
    box.bottom = Math.max(box.bottom, y + dy);
  };
  for (const point of boxes.values()) include(point, kWidth / 2, kHeight / 2);
  for (const way of ways) for (const point of way) include(point, way.length === 1 ? kLoopRise : 0, 0);
  return { x: box.left - kMargin, y: box.top - kMargin, width: box.right - box.left + 2 * kMargin,
    height: box.bottom - box.top + 2 * kMargin };
}

/** A line that leaves and enters every point level; one that joins a table with itself is a loop beside it. */
function curve([start, ...rest]: Point[]): string {
  let { x, y } = start!;
  if (rest.length === 0) return `M${x} ${y - kLoopRise / 3}C${x + kLoopRise} ${y - kLoopRise} ${x + kLoopRise} ${y + kLoopRise} ${x} ${y + kLoopRise / 3}`;
  return `M${x} ${y}` + rest.map((point) => {
    const middle = (x + point.x) / 2;
    const piece = `C${middle} ${y} ${middle} ${point.y} ${point.x} ${point.y}`;
    ({ x, y } = point);
    return piece;
  }).join("");
}

function line(joined: Joined, way: Point[]): SVGElement {
  const title = svg("title", {});
  title.textContent = joined.names.join("\n");
  return svg("path", { class: joined.active ? "join" : "join inactive", d: curve(way), "marker-end": "url(#join-end)" }, title);
}

function box(model: Model, id: number, { x, y }: Point): SVGElement {
  const text = svg("text", { x: x - kWidth / 2 + 11, y: y + 4.5 });
  text.textContent = fitted(plainName(model.name(id)), kFont, kTextWidth);
  const title = svg("title", {});
  title.textContent = plainName(model.name(id));
  return svg("a", { href: model.href(id) }, title,
    svg("rect", { x: x - kWidth / 2, y: y - kHeight / 2, width: kWidth, height: kHeight, rx: 6 }), text);
}

function drawing(model: Model, joins: Joined[]): HTMLElement {
  const placed = place(joins);
  const { x, y, width, height } = frame(placed);
  const arrow = svg("marker", { id: "join-end", viewBox: "0 0 10 10", refX: 9, refY: 5, markerWidth: 7, markerHeight: 7,
    orient: "auto-start-reverse" }, svg("path", { d: "M0 1l9 4-9 4z" }));
  const lines = joins.map((joined, i) => line(joined, placed.ways[i]!));
  const boxes = Array.from(placed.boxes, ([id, point]) => box(model, id, point));
  const picture = svg("svg", { class: "joins", viewBox: `${x} ${y} ${width} ${height}`, width, height, role: "group",
    "aria-label": "Tables and how they are joined" }, svg("defs", {}, arrow), ...lines, ...boxes);
  const scroll = h("div", { class: "joins-scroll", tabindex: "0", role: "region", "aria-label": "Relationships, drawn" });
  scroll.append(picture);
  return scroll;
}

function list(model: Model, relationships: Relationship[], firstRows?: number): HTMLElement {
  return table({
    label: "relationships", rows: relationships, ...(firstRows !== undefined && { firstRows }),
    filterText: ({ id, from, to }) => [id, from, to].map((one) => one === undefined ? "" : model.node(one).q ?? model.name(one))
      .join(" "),
    columns: [
      { title: "From", cell: ({ from }) => from !== undefined && placedLink(model, from) },
      { title: "To", cell: ({ to }) => to !== undefined && placedLink(model, to) },
      { title: "Relationship", cell: ({ id, active }) => [objectLink(model, id), !active && badge("inactive")] },
      { title: "Settings", cell: ({ id }) => settingsInShort(model, id) },
    ],
  });
}

/** The relationships that join a table with others, or nothing. */
export function relationshipsOf(model: Model, tableId: number): Child {
  const ids = new Set(Array.from(model.parts(tableId)).flatMap((part) => model.naming(part, "joins")));
  const found = Array.from(ids).filter((id) => model.kind(id) === "relationship");
  return found.length > 0 &&
    section(titled("Relationships", found.length), list(model, found.map((id) => relationshipOf(model, id)), 20));
}

export function relationshipsPage({ model }: App): Page {
  const all = model.ofKind("relationship").map((id) => relationshipOf(model, id));
  const joins = joinsOf(model, all);
  const tables = new Set(joins.flatMap(({ from, to }) => [from, to])).size;
  const isDrawn = joins.length > 0 && tables <= kMostTables && joins.length <= kMostDrawn;
  return {
    title: "Relationships",
    element: h("article", {},
      h("header", { class: "page-head" }, h("h1", { tabindex: "-1" }, "Relationships"),
        h("p", { class: "subtitle" }, `${counted(all.length, "relationship")} between ${counted(tables, "table")}`)),
      isDrawn ? section("Drawing", drawing(model, joins),
        h("p", { class: "note" }, "An arrow leads from the column that refers to the one that is referred to; dashed where only ",
          "inactive relationships join two tables."))
        : joins.length > 0 && h("p", { class: "note" }, `Not drawn: more than ${count(kMostTables)} tables cannot be read.`),
      section(titled("List", all.length), list(model, all))),
  };
}
