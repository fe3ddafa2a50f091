// Mining structures and their models, which no model of a database shows.

#include <array>

#include "reader/elements/element_rules.h"

namespace tav {
namespace {

using rule::columns;
using rule::item;
using rule::read;
using rule::reference;

constexpr std::array kRules{
    item("", ObjectKind::miningStructure, IdSpace::miningStructure),
    read("Source", Reading::part),
    reference("Source/CubeDimensionID", IdSpace::cubeDimension, RelationKind::mines),
    reference("Source/CubeID", IdSpace::cube, RelationKind::mines),
    item("Columns/Column", ObjectKind::miningColumn, IdSpace::miningColumn, RelationKind::mines),
    columns("Columns/Column/KeyColumns/KeyColumn", RelationKind::mines),
    columns("Columns/Column/NameColumn", RelationKind::name),
    columns("Columns/Column/ForeignKeyColumns/ForeignKeyColumn", RelationKind::joins),
    read("Columns/Column/Source", Reading::part),
    reference("Columns/Column/Source/CubeDimensionID", IdSpace::cubeDimension, RelationKind::mines),
    reference("Columns/Column/Source/AttributeID", IdSpace::attribute, RelationKind::mines),
    reference("Columns/Column/Source/MeasureID", IdSpace::measure, RelationKind::mines),
    read("Columns/Column/SourceMeasureGroup", Reading::part),
    reference("Columns/Column/SourceMeasureGroup/MeasureGroupID", IdSpace::measureGroup, RelationKind::mines),
    item("Columns/Column/Columns/Column", ObjectKind::miningColumn, IdSpace::miningColumn,
         RelationKind::mines),
    columns("Columns/Column/Columns/Column/KeyColumns/KeyColumn", RelationKind::mines),
    columns("Columns/Column/Columns/Column/NameColumn", RelationKind::name),
    read("Columns/Column/Columns/Column/Source", Reading::part),
    reference("Columns/Column/Columns/Column/Source/CubeDimensionID", IdSpace::cubeDimension,
              RelationKind::mines),
    reference("Columns/Column/Columns/Column/Source/AttributeID", IdSpace::attribute, RelationKind::mines),
    reference("Columns/Column/Columns/Column/Source/MeasureID", IdSpace::measure, RelationKind::mines),
    item("MiningModels/MiningModel", ObjectKind::miningModel, IdSpace::miningModel),
    read("MiningModels/MiningModel/AlgorithmParameters/AlgorithmParameter", Reading::part),
    read("MiningModels/MiningModel/Columns/Column", Reading::part),
    reference("MiningModels/MiningModel/Columns/Column/SourceColumnID", IdSpace::miningColumn,
              RelationKind::mines),
    read("MiningModels/MiningModel/Columns/Column/Columns/Column", Reading::part),
    reference("MiningModels/MiningModel/Columns/Column/Columns/Column/SourceColumnID", IdSpace::miningColumn,
              RelationKind::mines),
};

}  // namespace

constinit const ElementRules kMiningRules{"MiningStructures/MiningStructure", kRules};

}  // namespace tav
