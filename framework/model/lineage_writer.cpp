#include "framework/model/lineage_writer.h"

#include "framework/model/model.h"

namespace tav {

TAVClassifierMap& classifierMapOf(TAVClassifier& destination) {
  if (TAVClassifierMap* map = destination.getDestinationOfClassifierMap()) return *map;
  TAVClassifierMap& made = destination.addClassifierMap(make<TAVClassifierMap>());
  made.addDestinationClassifier(destination);
  return made;
}

TAVFeatureMap& featureMapOf(TAVFeature& destination) {
  if (TAVFeatureMap* map = destination.getDestinationOfFeatureMap()) return *map;
  return addFeatureMap(classifierMapOf(*destination.classifier), destination);
}

TAVFeatureMap& addFeatureMap(TAVClassifierMap& owner, TAVFeature& destination, std::string_view operation) {
  TAVFeatureMap& made = owner.addFeatureMap(make<TAVFeatureMap>());
  made.operation = operation;
  made.addDestinationFeature(destination);
  return made;
}

void addSource(TAVClassifierMap& map, TAVClassifier& source) {
  if (!map.sourceClassifiers.contains(source)) map.addSourceClassifier(source);
}

void addSource(TAVFeatureMap& map, TAVFeature& source) {
  if (!map.sourceFeatures.contains(source)) map.addSourceFeature(source);
  TAVClassifier* owner = source.classifier.get();
  TAVClassifierMap* whole = map.classifierMap.get();
  if (owner && whole) addSource(*whole, *owner);
}

}  // namespace tav
