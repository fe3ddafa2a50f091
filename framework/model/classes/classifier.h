#pragma once

#include "framework/model/classes/model_element.h"
#include "framework/model/link.h"

/// What has features: tables, dimensions, levels, cubes and their aliases.
class TAV_API TAVClassifier : public TAVModelElement {
 public:
  tav::Parts<TAVFeature> features;
  /// The maps that this classifier owns: those whose destination it is.
  tav::Parts<TAVClassifierMap> classifierMaps;
  tav::BackReferences<TAVClassifierMap> destinationOfClassifierMaps;
  tav::BackReferences<TAVClassifierMap> sourceOfClassifierMaps;
  tav::BackReferences<TAVStoreConnection> storeConnections;

  template <class T> T& addFeature(tav::Owned<T> feature) {
    return tav::add<&TAVClassifier::features>(*this, std::move(feature));
  }
  template <class T> T& addFeatureUniqueName(tav::Owned<T> feature, char separator) {
    return tav::addUnique<&TAVClassifier::features>(*this, std::move(feature), separator);
  }
  TAVClassifierMap& addClassifierMap(tav::Owned<TAVClassifierMap> map);
  /// The first map whose destination this classifier is, or null.
  [[nodiscard]] TAVClassifierMap* getDestinationOfClassifierMap() const;

 protected:
  using TAVModelElement::TAVModelElement;
};

template <> struct tav::Meta<TAVClassifier> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVClassifier::features>("features", "classifier"),
      link<&TAVClassifier::classifierMaps>("classifierMaps", "classifier"),
      link<&TAVClassifier::destinationOfClassifierMaps>("destinationOfClassifierMaps",
                                                        "destinationClassifier"),
      link<&TAVClassifier::sourceOfClassifierMaps>("sourceOfClassifierMaps", "sourceClassifiers"),
      link<&TAVClassifier::storeConnections>("storeConnections", "connectionClassifiers")};
};
