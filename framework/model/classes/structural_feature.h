#pragma once

#include "framework/model/classes/feature.h"
#include "framework/model/link.h"

/// A feature with values of its own.
class TAV_API TAVStructuralFeature : public TAVFeature {
 public:
  /// On a column: true when it is a column of its source, false when the view computes it. Carried along the
  /// lineage to measures.
  bool structural = false;

 protected:
  using TAVFeature::TAVFeature;
};

template <> struct tav::Meta<TAVStructuralFeature> {
  static constexpr std::array attributes{attribute<&TAVStructuralFeature::structural>("structural")};
  static constexpr std::array<LinkRow, 0> links{};
};
