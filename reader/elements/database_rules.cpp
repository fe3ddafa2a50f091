// What may stand anywhere in a definition, and what a database holds beside dimensions and cubes.

#include <array>

#include "reader/elements/element_rules.h"

namespace tav {
namespace {

using rule::columns;
using rule::expression;
using rule::item;
using rule::passedOver;
using rule::read;
using rule::reference;

constexpr std::array kAnywhere{
    passedOver("@design-time-name", PassedOver::designerLayout),
    passedOver("@valuens", PassedOver::designerLayout),
    passedOver("CreatedTimestamp", PassedOver::timeStamps),
    passedOver("LastSchemaUpdate", PassedOver::timeStamps),
    passedOver("LastProcessed", PassedOver::timeStamps),
    passedOver("LastUpdate", PassedOver::timeStamps),
    passedOver("State", PassedOver::processing),
    passedOver("ProcessingState", PassedOver::processing),
    passedOver("AttributeHierarchyProcessingState", PassedOver::processing),
    passedOver("CurrentStorageMode", PassedOver::processing),
    passedOver("EstimatedSize", PassedOver::processing),
    passedOver("Password", PassedOver::secrets),
    read("Annotations", Reading::part),
    read("Annotations/Annotation", Reading::annotation),
    read("Translations/Translation", Reading::part),
    columns("Translations/Translation/CaptionColumn", RelationKind::caption),
    read("ProactiveCaching", Reading::part),
    reference("ProactiveCaching/Source/DataSourceID", IdSpace::dataSource, RelationKind::reads),
    read("ErrorConfiguration", Reading::part),
    read("ImpersonationInfo", Reading::part),
    read("DataSourceImpersonationInfo", Reading::part),
    // A binding is read as a whole, by what it is in.
    read("TableID", Reading::known),
    read("ColumnID", Reading::known),
    reference("DataSourceID", IdSpace::dataSource, RelationKind::connects),
    reference("MasterDataSourceID", IdSpace::dataSource, RelationKind::connects),
    reference("DataSourceViewID", IdSpace::view, RelationKind::basis),
    reference("DimensionID", IdSpace::dimension, RelationKind::basis),
    reference("AttributeID", IdSpace::attribute, RelationKind::mentions),
    reference("HierarchyID", IdSpace::hierarchy, RelationKind::mentions),
    reference("CubeID", IdSpace::cube, RelationKind::direct),
    reference("CubeDimensionID", IdSpace::cubeDimension, RelationKind::mentions),
    reference("MeasureGroupID", IdSpace::measureGroup, RelationKind::mentions),
    reference("MeasureID", IdSpace::measure, RelationKind::mentions),
    reference("MiningModelID", IdSpace::miningModel, RelationKind::basis),
    reference("RoleID", IdSpace::role, RelationKind::belongs),
    // Who may do what; `owner` is what they may do it to.
    item("DatabasePermissions/DatabasePermission", ObjectKind::permission, IdSpace::none,
         RelationKind::secures),
    item("DataSourcePermissions/DataSourcePermission", ObjectKind::permission, IdSpace::none,
         RelationKind::secures),
    item("DimensionPermissions/DimensionPermission", ObjectKind::permission, IdSpace::none,
         RelationKind::secures),
    item("CubePermissions/CubePermission", ObjectKind::permission, IdSpace::none, RelationKind::secures),
    item("MiningStructurePermissions/MiningStructurePermission", ObjectKind::permission, IdSpace::none,
         RelationKind::secures),
    item("MiningModelPermissions/MiningModelPermission", ObjectKind::permission, IdSpace::none,
         RelationKind::secures),
    read("AttributePermissions/AttributePermission", Reading::part),
    reference("AttributePermissions/AttributePermission/AttributeID", IdSpace::attribute,
              RelationKind::secures),
    expression("AttributePermissions/AttributePermission/DefaultMember", RelationKind::filters),
    expression("AttributePermissions/AttributePermission/AllowedSet", RelationKind::secures),
    expression("AttributePermissions/AttributePermission/DeniedSet", RelationKind::secures),
};

constexpr std::array kDatabase{
    item("DataSources/DataSource", ObjectKind::dataSource, IdSpace::dataSource),
    read("DataSources/DataSource/ConnectionString", Reading::connection),
    item("Roles/Role", ObjectKind::role, IdSpace::role),
    item("Assemblies/Assembly", ObjectKind::assembly, IdSpace::assembly),
    item("Accounts/Account", ObjectKind::accountType),
    // It is called by its type.
    read("Accounts/Account/AccountType", Reading::known),
};

}  // namespace

constinit const ElementRules kAnywhereRules{"", kAnywhere};
constinit const ElementRules kDatabaseRules{"", kDatabase};

}  // namespace tav
