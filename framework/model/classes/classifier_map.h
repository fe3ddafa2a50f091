#pragma once

#include "framework/model/classes/element.h"
#include "framework/model/link.h"

/// Lineage between classifiers: which ones feed the destination, with the lineage of its features.
class TAV_API TAVClassifierMap : public TAVElement {
 public:
  TAVClassifierMap() : TAVElement(tav::classId<TAVClassifierMap>) {}
  /// A text kept with the map, for example the data source view that feeds a cube.
  TAVString sourceReference;
  tav::Container<TAVClassifier> classifier;
  tav::References<TAVClassifier> sourceClassifiers;
  tav::Reference<TAVClassifier> destinationClassifier;
  tav::Parts<TAVFeatureMap> featureMaps;

  void addDestinationClassifier(TAVClassifier& destination);
  void addSourceClassifier(TAVClassifier& source);
  TAVFeatureMap& addFeatureMap(tav::Owned<TAVFeatureMap> map);
};

template <> struct tav::Meta<TAVClassifierMap> {
  static constexpr std::array attributes{attribute<&TAVClassifierMap::sourceReference>("sourceReference")};
  static constexpr std::array links{
      link<&TAVClassifierMap::classifier>("classifier", "classifierMaps"),
      link<&TAVClassifierMap::sourceClassifiers>("sourceClassifiers", "sourceOfClassifierMaps"),
      link<&TAVClassifierMap::destinationClassifier>("destinationClassifier", "destinationOfClassifierMaps"),
      link<&TAVClassifierMap::featureMaps>("featureMaps", "classifierMap")};
};
