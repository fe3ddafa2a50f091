// How each kind of object is called and marked. The colour family follows the layer that an object stands in.

import type { EdgeKind, Kind } from "./model";

interface KindStyle {
  one: string;
  many: string;
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

export const kKinds: Record<Kind, KindStyle> = {
  databaseTable: { one: "database table", many: "database tables", family: "database", glyph: kTable },
  databaseColumn: { one: "database column", many: "database columns", family: "database", glyph: kColumn },
  viewTable: { one: "view table", many: "view tables", family: "view", glyph: kTable },
  namedQuery: { one: "named query", many: "named queries", family: "view", glyph: kFunction },
  viewColumn: { one: "view column", many: "view columns", family: "view", glyph: kColumn },
  computedColumn: { one: "computed column", many: "computed columns", family: "view", glyph: kFunction },
  condition: { one: "condition", many: "conditions", family: "view", glyph: kFilter },
  dimension: { one: "dimension", many: "dimensions", family: "dimension", glyph: kAxes },
  attribute: { one: "attribute", many: "attributes", family: "dimension", glyph: kTag },
  measureGroup: { one: "measure group", many: "measure groups", family: "measure", glyph: kTable },
  measure: { one: "measure", many: "measures", family: "measure", glyph: kSum },
  linkedMeasureGroup: { one: "linked measure group", many: "linked measure groups", family: "measure", glyph: kLink },
  linkedMeasure: { one: "linked measure", many: "linked measures", family: "measure", glyph: kLink },
  calculations: { one: "calculations", many: "calculations", family: "calculation", glyph: kTable },
  calculatedMeasure: { one: "calculated measure", many: "calculated measures", family: "calculation", glyph: kFunction },
  kpi: { one: "KPI", many: "KPIs", family: "kpi", glyph: kTarget },
  kpiValue: { one: "KPI value", many: "KPI values", family: "kpi", glyph: kTarget },
  cube: { one: "cube", many: "cubes", family: "cube", glyph: kCube },
  cubeDimension: { one: "cube dimension", many: "cube dimensions", family: "dimension", glyph: kAxes },
  cubeAttribute: { one: "cube attribute", many: "cube attributes", family: "dimension", glyph: kTag },
  cubeMeasure: { one: "cube measure", many: "cube measures", family: "cube", glyph: kSum },
  perspective: { one: "perspective", many: "perspectives", family: "cube", glyph: kEye },
};

/** Which of two equally well fitting names comes first: what people ask for before what stands behind it. */
export const kSearchOrder: Kind[] = [
  "cube", "measure", "calculatedMeasure", "kpi", "dimension", "attribute", "namedQuery", "viewTable", "databaseTable",
  "databaseColumn", "viewColumn", "computedColumn", "measureGroup", "perspective", "calculations", "linkedMeasureGroup",
  "linkedMeasure", "kpiValue", "cubeDimension", "cubeMeasure", "cubeAttribute", "condition",
];

interface EdgeStyle {
  label: string;
  /** Before the name of what an object comes from. */
  meaning: string;
}

export const kEdgeKinds: Record<EdgeKind, EdgeStyle> = {
  direct: { label: "Direct", meaning: "passed on unchanged" },
  computed: { label: "Computed", meaning: "used in an expression" },
  aggregated: { label: "Aggregated", meaning: "aggregated, such as summed or counted" },
  condition: { label: "Condition", meaning: "filters or joins rows" },
  member: { label: "Shown in", meaning: "shown in a cube or perspective" },
};
