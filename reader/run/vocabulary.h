#pragma once

// The element names of a database definition that are read; they are compared exactly.

#include <string_view>

namespace tav::xmla {

inline constexpr std::string_view kAggregateFunction = "AggregateFunction";
inline constexpr std::string_view kAlter = "Alter";
inline constexpr std::string_view kAttribute = "Attribute";
inline constexpr std::string_view kAttributeId = "AttributeID";
inline constexpr std::string_view kAttributeRelationship = "AttributeRelationship";
inline constexpr std::string_view kAttributeRelationships = "AttributeRelationships";
inline constexpr std::string_view kAttributes = "Attributes";
inline constexpr std::string_view kBatch = "Batch";
inline constexpr std::string_view kColumnId = "ColumnID";
inline constexpr std::string_view kCommand = "Command";
inline constexpr std::string_view kCommands = "Commands";
inline constexpr std::string_view kConnectionString = "ConnectionString";
inline constexpr std::string_view kCreate = "Create";
inline constexpr std::string_view kCube = "Cube";
inline constexpr std::string_view kCubeId = "CubeID";
inline constexpr std::string_view kCubes = "Cubes";
inline constexpr std::string_view kDatabase = "Database";
inline constexpr std::string_view kDataSources = "DataSources";
inline constexpr std::string_view kDataSourceViewId = "DataSourceViewID";
inline constexpr std::string_view kDataSourceViews = "DataSourceViews";
inline constexpr std::string_view kDataType = "DataType";
inline constexpr std::string_view kDescription = "Description";
inline constexpr std::string_view kDimension = "Dimension";
inline constexpr std::string_view kDimensionId = "DimensionID";
inline constexpr std::string_view kDimensions = "Dimensions";
inline constexpr std::string_view kGoal = "Goal";
inline constexpr std::string_view kHierarchies = "Hierarchies";
inline constexpr std::string_view kId = "ID";
inline constexpr std::string_view kKeyColumn = "KeyColumn";
inline constexpr std::string_view kKeyColumns = "KeyColumns";
inline constexpr std::string_view kKpis = "Kpis";
inline constexpr std::string_view kLevel = "Level";
inline constexpr std::string_view kLevels = "Levels";
inline constexpr std::string_view kMdxScripts = "MdxScripts";
inline constexpr std::string_view kMeasure = "Measure";
inline constexpr std::string_view kMeasureExpression = "MeasureExpression";
inline constexpr std::string_view kMeasureGroup = "MeasureGroup";
inline constexpr std::string_view kMeasureGroupId = "MeasureGroupID";
inline constexpr std::string_view kMeasureGroups = "MeasureGroups";
inline constexpr std::string_view kMeasureId = "MeasureID";
inline constexpr std::string_view kMeasures = "Measures";
inline constexpr std::string_view kName = "Name";
inline constexpr std::string_view kNameColumn = "NameColumn";
inline constexpr std::string_view kObjectDefinition = "ObjectDefinition";
inline constexpr std::string_view kPerspective = "Perspective";
inline constexpr std::string_view kPerspectives = "Perspectives";
inline constexpr std::string_view kSource = "Source";
inline constexpr std::string_view kSourceAttributeId = "SourceAttributeID";
inline constexpr std::string_view kStatus = "Status";
inline constexpr std::string_view kTableId = "TableID";
inline constexpr std::string_view kText = "Text";
inline constexpr std::string_view kTrend = "Trend";
inline constexpr std::string_view kType = "Type";
inline constexpr std::string_view kValue = "Value";
inline constexpr std::string_view kValueColumn = "ValueColumn";
inline constexpr std::string_view kVisible = "Visible";

}  // namespace tav::xmla
