#pragma once

// The element names of a database definition that are read; they are compared exactly.

#include <string_view>

namespace tav::xmla {

inline constexpr std::string_view kAlter = "Alter";
inline constexpr std::string_view kAttribute = "Attribute";
inline constexpr std::string_view kAttributeId = "AttributeID";
inline constexpr std::string_view kAttributeRelationship = "AttributeRelationship";
inline constexpr std::string_view kAttributeRelationships = "AttributeRelationships";
inline constexpr std::string_view kAttributes = "Attributes";
inline constexpr std::string_view kBatch = "Batch";
inline constexpr std::string_view kColumnId = "ColumnID";
inline constexpr std::string_view kConnectionString = "ConnectionString";
inline constexpr std::string_view kCreate = "Create";
inline constexpr std::string_view kDatabase = "Database";
inline constexpr std::string_view kDataSources = "DataSources";
inline constexpr std::string_view kDataSourceViewId = "DataSourceViewID";
inline constexpr std::string_view kDataSourceViews = "DataSourceViews";
inline constexpr std::string_view kDataType = "DataType";
inline constexpr std::string_view kDescription = "Description";
inline constexpr std::string_view kDimension = "Dimension";
inline constexpr std::string_view kDimensions = "Dimensions";
inline constexpr std::string_view kHierarchies = "Hierarchies";
inline constexpr std::string_view kId = "ID";
inline constexpr std::string_view kKeyColumn = "KeyColumn";
inline constexpr std::string_view kKeyColumns = "KeyColumns";
inline constexpr std::string_view kLevel = "Level";
inline constexpr std::string_view kLevels = "Levels";
inline constexpr std::string_view kName = "Name";
inline constexpr std::string_view kNameColumn = "NameColumn";
inline constexpr std::string_view kObjectDefinition = "ObjectDefinition";
inline constexpr std::string_view kSource = "Source";
inline constexpr std::string_view kSourceAttributeId = "SourceAttributeID";
inline constexpr std::string_view kTableId = "TableID";
inline constexpr std::string_view kType = "Type";
inline constexpr std::string_view kValueColumn = "ValueColumn";

}  // namespace tav::xmla
