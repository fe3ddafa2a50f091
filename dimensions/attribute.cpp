#include "dimensions/attribute.h"

#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// The column that types and feeds an attribute: its value, else its name, else its first key; or null.
const TAVDOMElement* findColumnBinding(const TAVDOMElement& attribute) {
  if (const TAVDOMElement* value = attribute.getFirstElement(kValueColumn)) return value;
  if (const TAVDOMElement* name = attribute.getFirstElement(kNameColumn)) return name;
  const TAVDOMElement* keys = attribute.getFirstElement(kKeyColumns);
  return keys ? keys->getFirstElement(kKeyColumn) : nullptr;
}

std::vector<std::string> relatedIdsOf(const TAVDOMElement& attribute) {
  std::vector<std::string> ids;
  if (const TAVDOMElement* relationships = attribute.getFirstElement(kAttributeRelationships)) {
    for (const TAVDOMElement& relationship : relationships->getElements())
      if (relationship.getTagName() == kAttributeRelationship)
        ids.emplace_back(relationship.getFirstElementValue(kAttributeId));
  }
  return ids;
}

TAVDimensionAttribute& addAttribute(ImportRun& run, const TAVDOMElement& element,
                                    const TAVDOMElement& binding, TAVDimension& dimension,
                                    std::string_view viewId) {
  auto made = make<TAVDimensionAttribute>();
  setNameDescription(element, *made);
  made->position = static_cast<std::uint16_t>(dimension.features.getCount());
  made->addType(run.types.fetch(*run.model, binding.getFirstElementValue(kDataType)));
  TAVDimensionAttribute& attribute = dimension.addFeature(std::move(made));
  run.records.add(attribute);
  note(run, element, attribute);
  if (const TAVDOMElement* source = binding.getFirstElement(kSource))
    run.columns.linkTo(attribute, viewId, *source);
  return attribute;
}

}  // namespace

void AttributeRecords::add(std::string_view id, AttributeRecord record) {
  byId_.add(records_.emplace_back(std::move(record)), id);
}

void importAttribute(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                     std::string_view viewId, AttributeRecords& records) {
  if (element.getTagName() != kAttribute) return;
  AttributeRecord record;
  // An attribute without a column is none in the model; a level may name it all the same.
  if (const TAVDOMElement* binding = findColumnBinding(element))
    record.attribute = &addAttribute(run, element, *binding, dimension, viewId);
  record.relatedIds = relatedIdsOf(element);
  records.add(element.getFirstElementValue(kId), std::move(record));
}

}  // namespace tav
