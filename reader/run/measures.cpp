#include "reader/run/measures.h"

#include "framework/model/lineage_writer.h"

namespace tav {

TAVMeasure& createMeasure(TAVClassifier& owner, const MeasureDescription& measure, bool plainAdd) {
  auto made = make<TAVMeasure>(measure.name);
  made->description = measure.description;
  made->nativeType = measure.nativeType;
  made->nativeId = measure.nativeId;
  made->aggregation = measure.aggregation;
  made->hidden = measure.hidden;
  made->position = static_cast<std::uint16_t>(owner.features.getCount());
  return plainAdd ? owner.addFeature(std::move(made)) : owner.addFeatureUniqueName(std::move(made), '/');
}

TAVMeasure& createMeasurePair(ImportRun& run, const MeasureDescription& measure, const TAVString& dataType,
                              const TAVString& expression, TAVDimension& measureGroup, TAVCube& cube) {
  TAVDerivedType& type = run.types.fetch(*run.model, dataType);
  // Names may repeat in a group; a cube shows the measures of all its groups side by side, so its copy gives
  // way.
  TAVMeasure& original = createMeasure(measureGroup, measure, true);
  original.addType(type);
  addFeatureMap(classifierMapOf(measureGroup), original, expression).description = expression;

  TAVMeasure& copy = createMeasure(cube, measure, false);
  copy.addType(type);
  addSource(addFeatureMap(classifierMapOf(cube), copy), original);
  return original;
}

}  // namespace tav
