#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

TAVLevel* TAVSQLServerXMLAImportBridge::importLevel(const TAVDOMElement& element, TAVDimension& dimension) {
  if (element.getTagName() != kLevel) return nullptr;
  if (TAVLevel* shared = dimension.levels.get(element.getFirstElementValue(kName))) return shared;

  auto made = tav::make<TAVLevel>();
  setNameIdDescription(element, *made);
  made->nativeId = "";
  TAVLevel& level = tav::add<&TAVDimension::levels>(dimension, std::move(made));

  const std::string_view sourceId = element.getFirstElementValue(kSourceAttributeId);
  if (const AttributeRecord* record = findAttributeRecord(sourceId, dimension)) {
    int counter = 0;
    TAVLevelAttribute* keyAttribute = addLevelAttributes(*record, level, counter);
    for (const TAVString& relatedId : record->relatedIds)
      if (const AttributeRecord* related = findAttributeRecord(relatedId, dimension))
        addLevelAttributes(*related, level, counter);
    if (keyAttribute)
      tav::add<&TAVLevel::levelKeys>(level, tav::make<TAVLevelKey>()).addLevelAttribute(*keyAttribute);
  }
  registerObject(level);
  return &level;
}

TAVLevelAttribute* TAVSQLServerXMLAImportBridge::addLevelAttributes(const AttributeRecord& record,
                                                                    TAVLevel& level, int& counter) {
  level.removeDefaultLevelAttribute();
  if (!record.dimensionAttribute) return nullptr;
  auto made = tav::make<TAVLevelAttribute>(record.dimensionAttribute->getName());
  made->position = static_cast<std::uint16_t>(counter++);
  made->addDimensionAttribute(*record.dimensionAttribute);
  TAVLevelAttribute& attribute = level.addFeature(std::move(made));
  level.addDefaultLevelAttribute(attribute);
  return &attribute;
}

const AttributeRecord* TAVSQLServerXMLAImportBridge::findAttributeRecord(
    std::string_view id, const TAVDimension& dimension) const {
  const AttributeRecord* record = recordsOfDimension_.find(id);
  return record && record->dimension == &dimension ? record : nullptr;
}
