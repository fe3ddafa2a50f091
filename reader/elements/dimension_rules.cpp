// What the model leaves out of dimensions of a database.

#include <array>

#include "reader/elements/element_rules.h"

namespace tav {
namespace {

using rule::columns;
using rule::expression;
using rule::item;
using rule::read;
using rule::reference;

constexpr std::array kRules{
    item("", ObjectKind::dimension, IdSpace::dimension),
    read("Source", Reading::part),
    item("Attributes/Attribute", ObjectKind::attribute, IdSpace::attribute),
    columns("Attributes/Attribute/KeyColumns/KeyColumn", RelationKind::key),
    columns("Attributes/Attribute/NameColumn", RelationKind::name),
    columns("Attributes/Attribute/ValueColumn", RelationKind::value),
    columns("Attributes/Attribute/UnaryOperatorColumn", RelationKind::unaryOperator),
    columns("Attributes/Attribute/CustomRollupColumn", RelationKind::rollup),
    columns("Attributes/Attribute/CustomRollupPropertiesColumn", RelationKind::rollup),
    columns("Attributes/Attribute/SkippedLevelsColumn", RelationKind::skippedLevels),
    columns("Attributes/Attribute/Source", RelationKind::key),
    reference("Attributes/Attribute/OrderByAttributeID", IdSpace::attribute, RelationKind::order),
    expression("Attributes/Attribute/DefaultMember", RelationKind::filters),
    read("Attributes/Attribute/AttributeRelationships/AttributeRelationship", Reading::part),
    reference("Attributes/Attribute/AttributeRelationships/AttributeRelationship/AttributeID",
              IdSpace::attribute, RelationKind::related),
    read("Attributes/Attribute/AttributeRelationships/AttributeRelationship/Name", Reading::relatedName),
    item("Hierarchies/Hierarchy", ObjectKind::hierarchy, IdSpace::hierarchy),
    item("Hierarchies/Hierarchy/Levels/Level", ObjectKind::level),
    reference("Hierarchies/Hierarchy/Levels/Level/SourceAttributeID", IdSpace::attribute,
              RelationKind::basis),
    item("Relationships/Relationship", ObjectKind::relationship, IdSpace::relationship),
    read("Relationships/Relationship/FromRelationshipEnd", Reading::part),
    read("Relationships/Relationship/FromRelationshipEnd/Attributes/Attribute", Reading::part),
    reference("Relationships/Relationship/FromRelationshipEnd/DimensionID", IdSpace::dimension,
              RelationKind::joins),
    reference("Relationships/Relationship/FromRelationshipEnd/Attributes/Attribute/AttributeID",
              IdSpace::attribute, RelationKind::joins),
    read("Relationships/Relationship/ToRelationshipEnd", Reading::part),
    read("Relationships/Relationship/ToRelationshipEnd/Attributes/Attribute", Reading::part),
    reference("Relationships/Relationship/ToRelationshipEnd/DimensionID", IdSpace::dimension,
              RelationKind::joins),
    reference("Relationships/Relationship/ToRelationshipEnd/Attributes/Attribute/AttributeID",
              IdSpace::attribute, RelationKind::joins),
};

}  // namespace

constinit const ElementRules kDimensionRules{"Dimensions/Dimension", kRules};

}  // namespace tav
