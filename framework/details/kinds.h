#pragma once

// What a definition speaks of and how its things relate: one row for each kind of object and of relation.
// Readers, the graph, comparisons, the report and exports go by these rows, so that a new kind is a row here
// and the function that reads it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "framework/api.h"

namespace tav {

enum class ObjectKind : std::uint8_t {
  // What databases and models hold.
  databaseTable,  ///< a table, view or function of a database, as far as a definition tells of it
  databaseColumn,
  viewTable,   ///< a table of a data source view that stands for one of the database
  namedQuery,  ///< a table of a data source view that a query fills
  viewColumn,
  computedColumn,  ///< a column that the data source view computes
  condition,       ///< under which a named query takes rows
  dimension,       ///< of the database; a table of a tabular model
  attribute,
  measureGroup,
  measure,
  linkedMeasureGroup,
  linkedMeasure,
  calculations,  ///< what holds a cube's calculated measures
  calculatedMeasure,
  kpi,
  kpiValue,  ///< Value, Goal, Status or Trend
  cube,
  cubeDimension,  ///< a dimension under the name that a cube gives it
  cubeAttribute,
  cubeMeasure,  ///< a measure, calculated measure or KPI value as a cube lists it
  perspective,
  // What a model has, and only its details relate.
  database,
  dataSource,
  dataSourceView,
  hierarchy,
  level,
  // What only the details have.
  relationship,
  cubeHierarchy,
  dimensionUsage,  ///< how a measure group uses a dimension of its cube
  partition,
  refreshPolicy,
  aggregationDesign,
  script,          ///< the MDX script of a cube
  everyMeasure,    ///< stands for all measures of a cube, for what applies to each of them
  everyPartition,  ///< stands for all partitions of a measure group or table, for what each of them fills
  namedSet,
  calculatedMember,  ///< of a dimension other than that of the measures, or one that the model lacks
  calculatedCells,
  scope,
  assignment,
  scriptStatement,  ///< a statement of a script that defines nothing
  action,
  role,
  permission,
  miningStructure,
  miningColumn,
  miningModel,
  assembly,
  accountType,  ///< how accounts of a type are added up, and what else the type is called
  calculationItem,
  sharedExpression,  ///< an M expression or parameter that others name
  function,          ///< a DAX function of the model
  culture,
  calendar,
  // What uses a model.
  report,
  reportPage,
  visual,
  bookmark,
  reportMeasure,  ///< a measure that only a report has
  reportDataSet,  ///< a query of a paginated report
  other,          ///< an element that is known by its name only
};
inline constexpr std::size_t kObjectKindCount = static_cast<std::size_t>(ObjectKind::other) + 1;

struct ObjectKindRow {
  std::string_view name;    ///< in exports and saved documents: "namedSet"
  std::string_view label;   ///< for people: "named set"
  std::string_view plural;  ///< "named sets"
  bool hasParts = false;    ///< tables, dimensions, cubes: its parts count as the next steps of a walk
  bool isCopy = false;      ///< shows another object as it is
  bool isOrdered = true;    ///< the order of its kind below one owner means something
};

TAV_API const ObjectKindRow& rowOf(ObjectKind kind) noexcept;
/// The kind of that name, or nothing.
TAV_API std::optional<ObjectKind> objectKindOf(std::string_view name);

/// Every relation leads from what is named to what names it: from a column to the attribute whose key it is.
enum class RelationKind : std::uint8_t {
  // Those that a model has too.
  direct,      ///< taken over as it is
  computed,    ///< one of the operands of an expression
  aggregated,  ///< added up, counted, ...
  condition,   ///< decides which rows count, and gives no value
  member,      ///< shown by the cube or perspective
  // Values.
  counted,  ///< the rows of a table are counted
  reads,    ///< a partition reads a table, column, query or expression
  fills,    ///< a partition fills a measure group or table
  assigns,  ///< an assignment changes what cells are worth
  applied,  ///< what applies to every measure changes this one
  // What an object is made of beside its value.
  key,
  name,
  value,
  caption,
  order,
  group,
  unaryOperator,
  rollup,
  skippedLevels,
  related,  ///< the related attribute of an attribute relationship
  basis,    ///< a level is based on an attribute, a dimension on a view
  parent,
  associated,
  // How measure groups and tables are joined.
  uses,  ///< a measure group uses a dimension
  granularity,
  intermediate,
  bridge,
  relates,  ///< a use of a dimension gives a measure group its members
  joins,    ///< a column is one end of a relationship
  follows,  ///< an expression chooses a relationship
  // What narrows, secures and shows.
  filters,
  secures,
  belongs,  ///< a permission to its role
  // How values look.
  formats,
  colours,
  nonEmpty,
  tooltip,
  detailRows,
  weighs,
  // Others that name something.
  offered,  ///< an action is offered on
  drills,   ///< an action shows
  mines,
  connects,  ///< a data source connects
  refreshes,
  displays,  ///< a report shows
  loads,     ///< a partition brings rows to a measure or column
  replaced,  ///< a source that the model has, and that the definition does not mean
  mentions,  ///< names it, and nothing more is known
};
inline constexpr std::size_t kRelationKindCount = static_cast<std::size_t>(RelationKind::mentions) + 1;

/// What a relation does beside giving a value.
enum class RelationSense : std::uint8_t {
  gives,       ///< a value flows
  identifies,  ///< names, keys, orders
  joins,
  narrows,
  secures,
  shows,
  formats,
  other,
};

struct RelationKindRow {
  std::string_view name;        ///< in exports and saved documents
  std::string_view upstream;    ///< before what is named, in the tree of what names it: "keyed by"
  std::string_view downstream;  ///< before what names it, in the tree of what is named: "key of"
  RelationSense sense = RelationSense::other;
};

TAV_API const RelationKindRow& rowOf(RelationKind kind) noexcept;
/// The kind of that name, or nothing.
TAV_API std::optional<RelationKind> relationKindOf(std::string_view name);
/// Whether a value flows along a relation.
TAV_API bool givesValue(RelationKind kind) noexcept;

}  // namespace tav
