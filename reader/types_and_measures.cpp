#include "framework/bridgelib/types.h"
#include "reader/reader.h"

namespace {

tav::Owned<TAVFeatureMap> makeFeatureMap(TAVFeature& destination) {
  auto map = tav::make<TAVFeatureMap>();
  map->addDestinationFeature(destination);
  return map;
}

}  // namespace

const TAVDataStoreVersion kDataSourceViewStore(TAVDataTypeConstants::DATASTORE_MICROSOFT_DSV, 9, 0, 0);

TAVString TAVSQLServerXMLAImportBridge::importTypeName(const TAVString& dataType) {
  if (!typeConverter_)
    typeConverter_ = std::make_unique<TAVDataTypeConverter>(log_, kDataSourceViewStore,
                                                            TAVDataTypeConstants::TOOL_MICROSOFT_DSV);
  return typeConverter_->getImportTypeName(dataType);
}

TAVDerivedType& TAVSQLServerXMLAImportBridge::getDerivedType(const TAVString& typeName,
                                                             const TAVString& nativeDataType) {
  return tav::fetchDerivedType(*model_, typeName, nativeDataType);
}

TAVMeasure& TAVSQLServerXMLAImportBridge::createMeasure(TAVClassifier& owner,
                                                        const MeasureDescription& measure, bool plainAdd) {
  auto made = tav::make<TAVMeasure>(measure.name);
  made->description = measure.description;
  made->nativeType = measure.nativeType;
  made->nativeId = measure.nativeId;
  made->aggregation = measure.aggregation;
  made->hidden = measure.hidden;
  made->position = static_cast<std::uint16_t>(owner.features.getCount());
  return plainAdd ? owner.addFeature(std::move(made)) : owner.addFeatureUniqueName(std::move(made), '/');
}

TAVMeasure& TAVSQLServerXMLAImportBridge::createMeasurePair(const MeasureDescription& measure,
                                                            const TAVString& dataType,
                                                            const TAVString& expression,
                                                            TAVDimension& measureGroup, TAVCube& cube) {
  TAVDerivedType& type = getDerivedType(importTypeName(dataType), dataType);
  TAVMeasure& original = createMeasure(measureGroup, measure, true);
  original.addType(type);
  tav::Owned<TAVFeatureMap> computed = makeFeatureMap(original);
  computed->operation = expression;
  computed->description = expression;
  measureGroup.getDestinationOfClassifierMap()->addFeatureMap(std::move(computed));

  TAVMeasure& copy = createMeasure(cube, measure, false);
  copy.addType(type);
  tav::Owned<TAVFeatureMap> copied = makeFeatureMap(copy);
  copied->addSourceFeature(original);
  TAVClassifierMap& cubeMap = *cube.getDestinationOfClassifierMap();
  if (!cubeMap.sourceClassifiers.contains(measureGroup)) cubeMap.addSourceClassifier(measureGroup);
  cubeMap.addFeatureMap(std::move(copied));
  return original;
}
