#pragma once

#include "framework/model/classes/element.h"
#include "framework/model/link.h"

/// Lineage between features: how the destination is computed, and from what.
class TAV_API TAVFeatureMap : public TAVElement {
 public:
  TAVFeatureMap() : TAVElement(tav::classId<TAVFeatureMap>) {}
  /// The expression that computes the destination; empty when it is taken over as it is.
  TAVString operation;
  tav::Container<TAVClassifierMap> classifierMap;
  tav::References<TAVFeature> sourceFeatures;
  tav::References<TAVFeature> controlFeatures;
  tav::Reference<TAVFeature> destinationFeature;

  void addDestinationFeature(TAVFeature& destination);
  void addSourceFeature(TAVFeature& source);
};

template <> struct tav::Meta<TAVFeatureMap> {
  static constexpr std::array attributes{attribute<&TAVFeatureMap::operation>("operation")};
  static constexpr std::array links{
      link<&TAVFeatureMap::classifierMap>("classifierMap", "featureMaps"),
      link<&TAVFeatureMap::sourceFeatures>("sourceFeatures", "sourceOf"),
      link<&TAVFeatureMap::controlFeatures>("controlFeatures", "controlOf"),
      link<&TAVFeatureMap::destinationFeature>("destinationFeature", "destinationOf")};
};
