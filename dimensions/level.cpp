#include "dimensions/level.h"

#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// Adds the attribute to the level and makes it the level's default: the last one stays it, and a last one
/// that the model does not have leaves none. Null when there is no such attribute.
TAVLevelAttribute* addLevelAttribute(const AttributeRecord& record, TAVLevel& level) {
  level.removeDefaultLevelAttribute();
  if (!record.attribute) return nullptr;
  auto made = make<TAVLevelAttribute>(record.attribute->getName());
  made->position = static_cast<std::uint16_t>(level.features.getCount());
  made->addDimensionAttribute(*record.attribute);
  TAVLevelAttribute& attribute = level.addFeature(std::move(made));
  level.addDefaultLevelAttribute(attribute);
  return &attribute;
}

void addLevelAttributes(const AttributeRecord& source, const AttributeRecords& attributes, TAVLevel& level) {
  TAVLevelAttribute* keyAttribute = addLevelAttribute(source, level);
  for (const std::string& relatedId : source.relatedIds)
    if (const AttributeRecord* related = attributes.find(relatedId)) addLevelAttribute(*related, level);
  if (keyAttribute) add<&TAVLevel::levelKeys>(level, make<TAVLevelKey>()).addLevelAttribute(*keyAttribute);
}

}  // namespace

TAVLevel* importLevel(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                      const AttributeRecords& attributes) {
  if (element.getTagName() != kLevel) return nullptr;
  if (TAVLevel* shared = dimension.levels.get(element.getFirstElementValue(kName))) return shared;

  auto made = make<TAVLevel>();
  setNameDescription(element, *made);
  TAVLevel& level = add<&TAVDimension::levels>(dimension, std::move(made));
  if (const AttributeRecord* source = attributes.find(element.getFirstElementValue(kSourceAttributeId)))
    addLevelAttributes(*source, attributes, level);
  run.records.add(level);
  return &level;
}

}  // namespace tav
