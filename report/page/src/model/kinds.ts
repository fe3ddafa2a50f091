// How each kind of object is marked. The colour family follows the layer that an object stands in.

import type { FlowStyle, Kind } from "./model";

interface KindStyle {
  family: "database" | "view" | "dimension" | "measure" | "calculation" | "kpi" | "cube";
  /** Strokes on a square of 16 by 16. */
  glyph: string;
}

const kTable = "M3.5 4.5h9v7h-9zM3.5 7h9M7 7v4.5";
const kColumn = "M5.5 3.5h5v9h-5zM5.5 6.5h5";
const kFunction = "M10.5 4.2c-1.7-.6-2.5.2-2.7 1.7L7 11c-.2 1.3-.9 1.7-2 1.3M5.5 7.3h4.2";
const kAxes = "M4.5 3.5v8h8M4.5 11.5l4-4";
const kTag = "M4 4h4.5l4 4-4.5 4.5-4-4zM6.2 6.2h.1";
const kSum = "M11 5V4H5l3.3 4L5 12h6v-1";
const kTarget = "M8 3.5a4.5 4.5 0 1 0 .01 0M8 6.5a1.5 1.5 0 1 0 .01 0";
const kCube = "M8 3l4.5 2.5v5L8 13l-4.5-2.5v-5zM3.5 5.5L8 8l4.5-2.5M8 8v5";
const kEye = "M3 8c2.5-4 7.5-4 10 0-2.5 4-7.5 4-10 0zM8 6.8a1.2 1.2 0 1 0 .01 0";
const kLink = "M7 9l2-2M6.5 6l1.5-1.5a2 2 0 0 1 3 3L9.5 9M9.5 10L8 11.5a2 2 0 0 1-3-3L6.5 7";
const kFilter = "M4 4.5h8L9 8.2v3.3l-2-1V8.2z";
const kSteps = "M3.5 12.5h3v-3h3v-3h3v-3";
const kStack = "M4 4h8v2H4zM4 7h8v2H4zM4 10h8v2H4z";
const kText = "M5 3.5h4l2 2v7H5zM6.5 7.5h3M6.5 9.5h3";
const kBraces = "M6.5 4C5 4 5.5 7.5 4 8c1.5.5 1 4 2.5 4M9.5 4C11 4 10.5 7.5 12 8c-1.5.5-1 4-2.5 4";
const kKey = "M6 6a2 2 0 1 0 .01 0M7.8 8h4.7M10.5 8v2";
const kBolt = "M9 3.5L5 8.5h3l-1 4 4-5H8z";
const kDot = "M8 7a1 1 0 1 0 .01 0";
const kStore = "M4 5c0-2 8-2 8 0v6c0 2-8 2-8 0zM4 5c0 2 8 2 8 0";

const kKinds: Record<Kind, KindStyle> = {
  databaseTable: { family: "database", glyph: kTable },
  databaseColumn: { family: "database", glyph: kColumn },
  viewTable: { family: "view", glyph: kTable },
  namedQuery: { family: "view", glyph: kFunction },
  viewColumn: { family: "view", glyph: kColumn },
  computedColumn: { family: "view", glyph: kFunction },
  condition: { family: "view", glyph: kFilter },
  dimension: { family: "dimension", glyph: kAxes },
  attribute: { family: "dimension", glyph: kTag },
  measureGroup: { family: "measure", glyph: kTable },
  measure: { family: "measure", glyph: kSum },
  linkedMeasureGroup: { family: "measure", glyph: kLink },
  linkedMeasure: { family: "measure", glyph: kLink },
  calculations: { family: "calculation", glyph: kTable },
  calculatedMeasure: { family: "calculation", glyph: kFunction },
  kpi: { family: "kpi", glyph: kTarget },
  kpiValue: { family: "kpi", glyph: kTarget },
  cube: { family: "cube", glyph: kCube },
  cubeDimension: { family: "dimension", glyph: kAxes },
  cubeAttribute: { family: "dimension", glyph: kTag },
  cubeMeasure: { family: "cube", glyph: kSum },
  perspective: { family: "cube", glyph: kEye },
  database: { family: "cube", glyph: kStore },
  dataSource: { family: "database", glyph: kStore },
  dataSourceView: { family: "view", glyph: kStack },
  hierarchy: { family: "dimension", glyph: kSteps },
  level: { family: "dimension", glyph: kSteps },
  cubeHierarchy: { family: "dimension", glyph: kSteps },
  relationship: { family: "view", glyph: kLink },
  dimensionUsage: { family: "dimension", glyph: kLink },
  partition: { family: "measure", glyph: kStack },
  aggregationDesign: { family: "measure", glyph: kStack },
  script: { family: "calculation", glyph: kText },
  everyMeasure: { family: "measure", glyph: kSum },
  everyPartition: { family: "measure", glyph: kStack },
  namedSet: { family: "calculation", glyph: kBraces },
  calculatedMember: { family: "calculation", glyph: kFunction },
  calculatedCells: { family: "calculation", glyph: kTable },
  scope: { family: "calculation", glyph: kBraces },
  assignment: { family: "calculation", glyph: kFunction },
  scriptStatement: { family: "calculation", glyph: kText },
  action: { family: "cube", glyph: kBolt },
  role: { family: "kpi", glyph: kKey },
  permission: { family: "kpi", glyph: kKey },
  miningStructure: { family: "view", glyph: kTable },
  miningColumn: { family: "view", glyph: kColumn },
  miningModel: { family: "view", glyph: kFunction },
  calculationItem: { family: "calculation", glyph: kFunction },
  sharedExpression: { family: "view", glyph: kFunction },
  function: { family: "calculation", glyph: kFunction },
};

/** Kinds that are new to the page have a mark, too. */
const kOtherKind: KindStyle = { family: "cube", glyph: kDot };

export function kindStyle(kind: Kind): KindStyle {
  return Object.hasOwn(kKinds, kind) ? kKinds[kind]! : kOtherKind;
}

/** Where drawings put objects of a kind, from the left: in the order in which data flows. */
export function stageOf(kind: Kind): number {
  switch (kindStyle(kind).family) {
    case "database": return 0;
    case "view": return 1;
    case "dimension":
    case "measure": return 2;
    case "calculation": return 3;
    case "kpi": return 4;
    case "cube": return 5;
  }
}

/** Which of two equally well fitting names comes first: what people ask for before what stands behind it. */
export const kSearchOrder: Kind[] = [
  "cube", "measure", "calculatedMeasure", "kpi", "dimension", "attribute", "namedQuery", "viewTable", "databaseTable",
  "databaseColumn", "viewColumn", "computedColumn", "measureGroup", "perspective", "calculations", "linkedMeasureGroup",
  "linkedMeasure", "hierarchy", "namedSet", "calculatedMember", "function", "sharedExpression", "calculationItem", "role",
  "action", "level", "partition", "miningModel", "miningStructure", "kpiValue", "cubeDimension", "cubeMeasure", "cubeAttribute", "condition",
];

interface EdgeStyle {
  label: string;
  meaning: string;
  width: number;
  dash: number[];
  colour: "edge" | "computed" | "aggregated" | "condition" | "faint" | "muted";
  /** Switched on before anyone asks. */
  first?: true;
}

/** How relations are drawn: each kind differs in its stroke, not in colour alone. */
export const kFlowStyles: Record<FlowStyle, EdgeStyle> = {
  direct: { label: "Direct", meaning: "passed on unchanged", width: 1.5, dash: [], colour: "edge", first: true },
  computed: { label: "Computed", meaning: "used in an expression", width: 1.5, dash: [7, 4], colour: "computed", first: true },
  aggregated: { label: "Aggregated", meaning: "aggregated, such as summed or counted", width: 3, dash: [],
    colour: "aggregated", first: true },
  condition: { label: "Condition", meaning: "filters or joins rows", width: 2, dash: [2, 3], colour: "condition", first: true },
  member: { label: "Shown in", meaning: "shown in a cube or perspective", width: 1, dash: [], colour: "faint" },
  identifies: { label: "Keys and names", meaning: "names, keys, orders or groups an object", width: 1, dash: [9, 3, 2, 3],
    colour: "muted" },
  joins: { label: "Joins", meaning: "joins measure groups and dimensions, or tables", width: 2, dash: [12, 3], colour: "muted" },
  secures: { label: "Security", meaning: "permits or secures", width: 2, dash: [1, 4], colour: "muted" },
  formats: { label: "Formats", meaning: "formats or colours values", width: 1, dash: [3, 3], colour: "muted" },
  other: { label: "Other", meaning: "names it in another way", width: 1, dash: [1, 3], colour: "muted" },
};
