#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// A feature of a classifier: a column, an attribute, a measure.
class TAV_API TAVFeature : public TAVModelObject {
 public:
  /// The place among its owner's features when it was added, from 0; the 65,537th is 0 again.
  std::uint16_t position = 0;
  tav::Container<TAVClassifier> classifier;
  tav::Reference<TAVType> type;
  tav::BackReference<TAVFeatureMap> destinationOf;
  tav::BackReferences<TAVFeatureMap> sourceOf;
  tav::BackReferences<TAVFeatureMap> controlOf;

  void addType(TAVType& dataType);
  /// The map that computes this feature, or null.
  [[nodiscard]] TAVFeatureMap* getDestinationOfFeatureMap() const;

 protected:
  using TAVModelObject::TAVModelObject;
};

template <> struct tav::Meta<TAVFeature> {
  static constexpr std::array attributes{attribute<&TAVFeature::position>("position")};
  static constexpr std::array links{link<&TAVFeature::classifier>("classifier", "features"),
                                    link<&TAVFeature::type>("type", "features"),
                                    link<&TAVFeature::destinationOf>("destinationOf", "destinationFeature"),
                                    link<&TAVFeature::sourceOf>("sourceOf", "sourceFeatures"),
                                    link<&TAVFeature::controlOf>("controlOf", "controlFeatures")};
};
