#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

/// The column that types and feeds an attribute: its value, else its name, else its first key; or null.
const TAVDOMElement* findColumnBinding(const TAVDOMElement& attribute) {
  if (const TAVDOMElement* value = attribute.getFirstElement(kValueColumn)) return value;
  if (const TAVDOMElement* name = attribute.getFirstElement(kNameColumn)) return name;
  const TAVDOMElement* keys = attribute.getFirstElement(kKeyColumns);
  return keys ? keys->getFirstElement(kKeyColumn) : nullptr;
}

std::vector<TAVString> relatedIdsOf(const TAVDOMElement& attribute) {
  std::vector<TAVString> ids;
  if (const TAVDOMElement* relationships = attribute.getFirstElement(kAttributeRelationships)) {
    for (const TAVDOMElement& relationship : relationships->getElements())
      if (relationship.getTagName() == kAttributeRelationship)
        ids.emplace_back(relationship.getFirstElementValue(kAttributeId));
  }
  return ids;
}

}  // namespace

void TAVSQLServerXMLAImportBridge::importAttribute(const TAVDOMElement& element, TAVDimension& dimension,
                                                   const TAVClassifierMap& dimensionMap, int& counter) {
  if (element.getTagName() != kAttribute) return;
  AttributeRecord& record = attributeRecords_.emplace_back();
  record.id = element.getFirstElementValue(kId);
  record.name = element.getFirstElementValue(kName);
  record.description = element.getFirstElementValue(kDescription);
  record.dimension = &dimension;
  if (const TAVDOMElement* binding = findColumnBinding(element))
    bindAttribute(*binding, record, dimensionMap, counter);
  record.relatedIds = relatedIdsOf(element);
  recordsOfDimension_.add(record, record.id);
}

void TAVSQLServerXMLAImportBridge::bindAttribute(const TAVDOMElement& binding, AttributeRecord& record,
                                                 const TAVClassifierMap& dimensionMap, int& counter) {
  auto made = tav::make<TAVDimensionAttribute>(record.name);
  made->position = static_cast<std::uint16_t>(counter++);
  made->description = record.description;
  const TAVString dataType = binding.getFirstElementValue(kDataType);
  made->addType(getDerivedType(importTypeName(dataType), dataType));
  TAVDimensionAttribute& attribute = record.dimension->addFeature(std::move(made));
  registerObject(attribute);
  record.dimensionAttribute = &attribute;
  if (const TAVDOMElement* source = binding.getFirstElement(kSource)) {
    linkFeatureToColumn(dimensionMap.sourceReference, attribute,
                        TAVDsvReader::stringEscape(source->getFirstElementValue(kTableId)),
                        TAVDsvReader::stringEscape(source->getFirstElementValue(kColumnId)));
  }
}
