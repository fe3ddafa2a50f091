// What the model leaves out of cubes and their measure groups.

#include <array>

#include "reader/elements/element_rules.h"

namespace tav {
namespace {

using rule::columns;
using rule::expression;
using rule::item;
using rule::read;
using rule::reference;

constexpr std::array kCube{
    item("", ObjectKind::cube, IdSpace::cube),
    read("Source", Reading::part),
    expression("DefaultMeasure", RelationKind::filters),
    item("Dimensions/Dimension", ObjectKind::cubeDimension, IdSpace::cubeDimension),
    // Which dimension and attribute it shows, the model says.
    reference("Dimensions/Dimension/DimensionID", IdSpace::dimension, RelationKind::direct),
    item("Dimensions/Dimension/Attributes/Attribute", ObjectKind::cubeAttribute),
    reference("Dimensions/Dimension/Attributes/Attribute/AttributeID", IdSpace::attribute,
              RelationKind::direct),
    expression("Dimensions/Dimension/Attributes/Attribute/DefaultMember", RelationKind::filters),
    item("Dimensions/Dimension/Hierarchies/Hierarchy", ObjectKind::cubeHierarchy),
    reference("Dimensions/Dimension/Hierarchies/Hierarchy/HierarchyID", IdSpace::originalHierarchy,
              RelationKind::basis),

    item("Perspectives/Perspective", ObjectKind::perspective, IdSpace::perspective),
    expression("Perspectives/Perspective/DefaultMeasure", RelationKind::filters),
    read("Perspectives/Perspective/Dimensions/Dimension", Reading::part),
    reference("Perspectives/Perspective/Dimensions/Dimension/CubeDimensionID", IdSpace::cubeDimension,
              RelationKind::member),
    read("Perspectives/Perspective/Dimensions/Dimension/Attributes/Attribute", Reading::part),
    reference("Perspectives/Perspective/Dimensions/Dimension/Attributes/Attribute/AttributeID",
              IdSpace::attribute, RelationKind::member),
    expression("Perspectives/Perspective/Dimensions/Dimension/Attributes/Attribute/DefaultMember",
               RelationKind::filters),
    read("Perspectives/Perspective/Dimensions/Dimension/Hierarchies/Hierarchy", Reading::part),
    reference("Perspectives/Perspective/Dimensions/Dimension/Hierarchies/Hierarchy/HierarchyID",
              IdSpace::hierarchy, RelationKind::member),
    read("Perspectives/Perspective/MeasureGroups/MeasureGroup", Reading::part),
    reference("Perspectives/Perspective/MeasureGroups/MeasureGroup/MeasureGroupID", IdSpace::measureGroup,
              RelationKind::member),
    read("Perspectives/Perspective/MeasureGroups/MeasureGroup/Measures/Measure", Reading::part),
    reference("Perspectives/Perspective/MeasureGroups/MeasureGroup/Measures/Measure/MeasureID",
              IdSpace::measure, RelationKind::member),
    read("Perspectives/Perspective/Calculations/Calculation", Reading::fold),
    ElementRule{"Perspectives/Perspective/Calculations/Calculation/Name", Reading::calculationName,
                IdSpace::none, ObjectKind::other, RelationKind::member},
    reference("Perspectives/Perspective/Kpis/Kpi/KpiID", IdSpace::kpi, RelationKind::member),
    reference("Perspectives/Perspective/Actions/Action/ActionID", IdSpace::action, RelationKind::member),

    item("Kpis/Kpi", ObjectKind::kpi, IdSpace::kpi),
    read("Kpis/Kpi/Value", Reading::known),
    read("Kpis/Kpi/Goal", Reading::known),
    read("Kpis/Kpi/Status", Reading::known),
    read("Kpis/Kpi/Trend", Reading::known),
    expression("Kpis/Kpi/Weight", RelationKind::weighs),
    expression("Kpis/Kpi/CurrentTimeMember", RelationKind::mentions),
    reference("Kpis/Kpi/AssociatedMeasureGroupID", IdSpace::measureGroup, RelationKind::associated),
    reference("Kpis/Kpi/ParentKpiID", IdSpace::kpi, RelationKind::parent),

    item("Actions/Action", ObjectKind::action, IdSpace::action),
    ElementRule{"Actions/Action/Target", Reading::target, IdSpace::measureGroupName, ObjectKind::other,
                RelationKind::offered},
    expression("Actions/Action/Condition", RelationKind::condition),
    expression("Actions/Action/Expression", RelationKind::computed),
    expression("Actions/Action/ReportParameters/ReportParameter/Value", RelationKind::computed),
    read("Actions/Action/Columns/Column", Reading::part),
    reference("Actions/Action/Columns/Column/CubeDimensionID", IdSpace::cubeDimension, RelationKind::drills),
    reference("Actions/Action/Columns/Column/AttributeID", IdSpace::attribute, RelationKind::drills),
    reference("Actions/Action/Columns/Column/MeasureID", IdSpace::measure, RelationKind::drills),

    item("CubePermissions/CubePermission", ObjectKind::permission, IdSpace::none, RelationKind::secures),
    reference("CubePermissions/CubePermission/DimensionPermissions/DimensionPermission/CubeDimensionID",
              IdSpace::cubeDimension, RelationKind::secures),
    read("CubePermissions/CubePermission/CellPermissions/CellPermission", Reading::part),
    expression("CubePermissions/CubePermission/CellPermissions/CellPermission/Expression",
               RelationKind::secures),

    item("MdxScripts/MdxScript", ObjectKind::script),
    // The commands are read as scripts, in a room of their own.
    read("MdxScripts/MdxScript/Commands/Command/Text", Reading::known),
    read("MdxScripts/MdxScript/CalculationProperties/CalculationProperty", Reading::calculation),
    reference("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/AssociatedMeasureGroupID",
              IdSpace::measureGroup, RelationKind::associated),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/FormatString",
               RelationKind::formats),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/ForeColor",
               RelationKind::colours),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/BackColor",
               RelationKind::colours),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/FontName",
               RelationKind::formats),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/FontSize",
               RelationKind::formats),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/FontFlags",
               RelationKind::formats),
    expression("MdxScripts/MdxScript/CalculationProperties/CalculationProperty/NonEmptyBehavior",
               RelationKind::nonEmpty),
};

constexpr std::array kMeasureGroup{
    item("", ObjectKind::measureGroup, IdSpace::measureGroup),
    read("Source", Reading::part),
    reference("Source/MeasureGroupID", IdSpace::measureGroup, RelationKind::direct),
    item("Measures/Measure", ObjectKind::measure, IdSpace::measure),
    columns("Measures/Measure/Source", RelationKind::aggregated),
    read("Measures/Measure/Source/Source", Reading::source),
    reference("Measures/Measure/Source/Source/MeasureID", IdSpace::measure, RelationKind::direct),
    read("Measures/Measure/MeasureExpression", Reading::known),

    item("Dimensions/Dimension", ObjectKind::dimensionUsage, IdSpace::none, RelationKind::relates),
    read("Dimensions/Dimension/Source", Reading::source),
    reference("Dimensions/Dimension/Source/CubeDimensionID", IdSpace::cubeDimension, RelationKind::mentions),
    reference("Dimensions/Dimension/CubeDimensionID", IdSpace::cubeDimension, RelationKind::uses),
    reference("Dimensions/Dimension/CaseCubeDimensionID", IdSpace::cubeDimension, RelationKind::mines),
    reference("Dimensions/Dimension/IntermediateCubeDimensionID", IdSpace::cubeDimension,
              RelationKind::intermediate),
    reference("Dimensions/Dimension/IntermediateGranularityAttributeID", IdSpace::attribute,
              RelationKind::intermediate),
    reference("Dimensions/Dimension/MeasureGroupID", IdSpace::measureGroup, RelationKind::bridge),
    expression("Dimensions/Dimension/DirectSlice", RelationKind::filters),
    // Bound columns of the granularity have that relation, those of other attributes this one.
    columns("Dimensions/Dimension/Attributes/Attribute", RelationKind::key, Reading::attributeCopy),
    reference("Dimensions/Dimension/Attributes/Attribute/AttributeID", IdSpace::attribute,
              RelationKind::uses),

    item("Partitions/Partition", ObjectKind::partition, IdSpace::none, RelationKind::fills),
    columns("Partitions/Partition/Source", RelationKind::reads, Reading::part),
    read("Partitions/Partition/Source/QueryDefinition", Reading::query),
    read("Partitions/Partition/Source/DbTableName", Reading::table),
    reference("Partitions/Partition/AggregationDesignID", IdSpace::aggregationDesign,
              RelationKind::associated),
    expression("Partitions/Partition/Slice", RelationKind::filters),

    item("AggregationDesigns/AggregationDesign", ObjectKind::aggregationDesign, IdSpace::aggregationDesign),
    read("AggregationDesigns/AggregationDesign/Dimensions/Dimension", Reading::namedFold),
    read("AggregationDesigns/AggregationDesign/Aggregations/Aggregation", Reading::fold),
};

}  // namespace

constinit const ElementRules kCubeRules{"Cubes/Cube", kCube};
constinit const ElementRules kMeasureGroupRules{"Cubes/Cube/MeasureGroups/MeasureGroup", kMeasureGroup};

}  // namespace tav
