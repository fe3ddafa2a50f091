#pragma once

// What the objects of a model stand for. The class tells a table from a dimension; whether a dimension is one
// of the database, a measure group or a KPI is told by a flag, or by a label: its native type, or that of the
// package which holds it. Here stands how each role is marked; whoever makes objects writes these labels,
// whoever reads a model asks these functions.

#include <array>
#include <string_view>
#include <vector>

#include "framework/api.h"
#include "framework/model/class_list.h"

namespace tav {

/// The labels, compared exactly. Folders bear theirs as name and as native type.
namespace label {

// Models and what they are read from.
inline constexpr std::string_view kMultidimensionalDatabase = "AS Database";
inline constexpr std::string_view kTabularDatabase = "Tabular Database";
inline constexpr std::string_view kDataSource = "DataSource";
inline constexpr std::string_view kDataSourceView = "DataSourceView";

// Top-level packages.
inline constexpr std::string_view kDataSourceViews = "Data Source Views";
inline constexpr std::string_view kDimensions = "Dimensions";
inline constexpr std::string_view kCubes = "Cubes";
inline constexpr std::string_view kJoinGroups = "Join Groups";
inline constexpr std::string_view kTransformations = "Transformations";

// Folders of a cube's package. The dimension that holds a cube's calculated measures bears the folder's
// label.
inline constexpr std::string_view kMeasureGroups = "Measure Groups";
inline constexpr std::string_view kCalculatedMeasures = "Calculated Measures";
inline constexpr std::string_view kKpis = "KPIs";

// Single objects.
inline constexpr std::string_view kCube = "Cube";
inline constexpr std::string_view kPerspective = "Perspective";
inline constexpr std::string_view kDimension = "Dimension";
inline constexpr std::string_view kMeasureGroup = "MeasureGroup";
inline constexpr std::string_view kCalculatedMeasure = "Calculated Measure";
inline constexpr std::string_view kKpi = "KPI";
inline constexpr std::string_view kCalculatedColumn = "Calculated Column";
inline constexpr std::string_view kCalculatedTableColumn = "Calculated Table Column";

// TAVTable::tableType.
inline constexpr std::string_view kTable = "Table";
inline constexpr std::string_view kView = "View";
inline constexpr std::string_view kNamedQuery = "NamedQuery";

/// The native type of a table that an importer marks as a query which the database runs, in
/// TAVTable::query, and whose sources are to be found.
inline constexpr std::string_view kUnresolvedQuery = "DatabaseQuery";

/// The operation of a measure that counts rows.
inline constexpr std::string_view kRowCount = "COUNT(*)";
/// The properties of a tabular measure or column that name, a line each, the tables that its expression names
/// by themselves, and those of which its value is the number of rows.
inline constexpr std::string_view kSourceTables = "sourceTables";
inline constexpr std::string_view kCountedTables = "countedTables";
/// The feature of a table that stands for the conditions of its query.
inline constexpr std::string_view kSqlCondition = "SQL CONDITION";

}  // namespace label

/// A part of a KPI: the name of its measure, and that measure's native type.
struct KpiPart {
  std::string_view name;
  std::string_view nativeType;
};
inline constexpr std::array kKpiParts{KpiPart{"Value", "KPI Value"}, KpiPart{"Goal", "KPI Goal"},
                                      KpiPart{"Status", "KPI Status"}, KpiPart{"Trend", "KPI Trend"}};

enum class ClassifierRole : std::uint8_t {
  viewTable,   ///< a table of a data source view that stands for one of the database
  namedQuery,  ///< one that a query fills
  dimension,   ///< of the database; a table of a tabular model
  measureGroup,
  linkedMeasureGroup,
  calculatedMeasures,  ///< what holds the calculated measures of a cube
  kpi,
  cube,
  cubeDimension,  ///< a dimension under the name that a cube gives it
  level,
};

TAV_API ClassifierRole roleOf(const TAVClassifier& classifier);

/// Whether the model was imported from a tabular definition.
TAV_API bool isTabular(const TAVModel& model);
/// The attribute behind the first key of a level, or null.
TAV_API TAVDimensionAttribute* keyAttributeOf(const TAVLevel& level);
/// Whether a measure counts the rows of its table.
TAV_API bool countsRows(const TAVMeasure& measure);

/// The tables that an object reads, the columns that feed it, or the names in its expression that were not
/// found, as the model keeps them: a line each.
TAV_API std::vector<std::string_view> querySourcesOf(const TAVModelObject& object);
TAV_API std::vector<std::string_view> unresolvedNamesOf(const TAVModelObject& object);
/// The lines of an object's property, none where it has none of that name.
TAV_API std::vector<std::string_view> linesOfProperty(const TAVModelObject& object, std::string_view name);

}  // namespace tav
