#include "reader/elements/value_reader.h"

#include <string>

#include "reader/elements/element_shape.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {

void ValueReader::read(const TAVDOMElement& element, RuleTree::Node node, const ElementPlace& parent) {
  readValue(element, reading_.rules.rule(node), parent);
  if (element.getAttributes().empty()) return;
  ElementPlace leaf = parent;
  leaf.element = &element;
  leaf.node = node;
  const std::size_t place = reading_.settings.place();
  reading_.settings.goDown(element.getLocalName());
  readAttributes(leaf);
  reading_.settings.goBack(place);
}

void ValueReader::readValue(const TAVDOMElement& element, const ElementRule& rule,
                            const ElementPlace& parent) {
  const std::string_view value = element.getValue();
  bool isSetting = true;
  switch (rule.reading) {
    case Reading::reference:
      return addReference(element, rule, parent);
    case Reading::calculationName:
      return mdx_.addCalculationName(parent, value, rule.relation);
    case Reading::query:
      reading_.details.setText(parent.item, value, "sql");
      return queries_.add(parent.item, value, parent.element->getFirstElementValue("DataSourceID"));
    case Reading::connection:
      isSetting = !isShownConnection(parent);
      break;
    case Reading::table:
      queries_.addTable(parent.item, *parent.element);
      break;
    case Reading::target:
      mdx_.addTarget(parent, rule, value);
      break;
    case Reading::relatedName:
      isSetting = items_.nameOfAttribute(parent.element->getFirstElementValue(kAttributeId)) != value;
      break;
    case Reading::expression:
      if (!value.empty()) mdx_.addExpression(parent, value, rule.relation);
      isSetting = &element != parent.label;
      break;
    default:
      return readPlain(element, parent);
  }
  if (isSetting) reading_.settings.set(parent.item, element.getLocalName(), value);
}

void ValueReader::readPlain(const TAVDOMElement& element, const ElementPlace& parent) {
  const std::string_view tag = element.getLocalName();
  const std::string_view value = element.getValue();
  // The ID of what is called by it already.
  if (tag == kId && parent.label && parent.label->getValue() == value) return;
  reading_.settings.set(parent.item, isNoted(element, parent) ? std::string_view() : tag,
                        value.empty() ? typeOf(element) : value);
}

/// Whether an element is what an annotation says.
bool ValueReader::isNoted(const TAVDOMElement& element, const ElementPlace& parent) const {
  return parent.isFold && reading_.rule(parent).reading == Reading::annotation &&
         element.getLocalName() == kValue;
}

/// Whether the model keeps the connection of a data source: not one that feeds nothing.
bool ValueReader::isShownConnection(const ElementPlace& place) const {
  const auto* connection = as<TAVStoreConnection>(reading_.details.item(place.item).object);
  return connection && !connection->connectionClassifiers.empty();
}

void ValueReader::addReference(const TAVDOMElement& element, const ElementRule& rule,
                               const ElementPlace& parent) {
  const std::string_view tag = element.getLocalName();
  const bool isGranularity =
      rule.relation == RelationKind::uses && parent.columns == RelationKind::granularity;
  const IdScope* scope = parent.scope;
  // An attribute of the dimension beside it.
  if (tag == "IntermediateGranularityAttributeID")
    scope = &reading_.scopes.inCubeDimension(
        *scope, parent.element->getFirstElementValue("IntermediateCubeDimensionID"));
  reading_.references.add(IdReference{parent.item, isGranularity ? RelationKind::granularity : rule.relation,
                                      rule.space, scope, element.getValue(), tag, parent.text});
  // Among the folded values the ID alone tells what is meant.
  if (reading_.settings.isFolding() && &element != parent.label)
    reading_.settings.set(parent.item, {}, element.getValue());
}

void ValueReader::readBinding(const ElementPlace& place) {
  const TAVDOMElement* table = place.element->getFirstElement(kTableId);
  if (!table) return;
  const std::string_view column = place.element->getFirstElementValue(kColumnId);
  // A measure over a whole table counts its rows.
  const bool isCount = place.columns == RelationKind::aggregated && column.empty();
  reading_.references.add(ColumnReference{place.item, isCount ? RelationKind::counted : place.columns,
                                          place.scope->view, table->getValue(), column, place.text});
}

void ValueReader::readAttributes(const ElementPlace& place) {
  for (const DomAttribute& attribute : place.element->getAttributes()) {
    const DomName& name = *attribute.name;
    if (name.written.starts_with("xmlns")) continue;
    if (name.space == kSchemaInstance && name.local == kTypeAttribute) {
      if (!isLeaf(*place.element) && !typeOf(*place.element).empty())
        reading_.settings.set(place.item, kTypeAttribute, attribute.value);
      continue;
    }
    const ElementRule& rule =
        reading_.rules.rule(reading_.rules.child(place.node, "@" + std::string(name.local)));
    if (rule.reading == Reading::passedOver)
      reading_.details.passOver(rule.what);
    else
      reading_.settings.set(place.item, name.local, attribute.value);
  }
}

}  // namespace tav
