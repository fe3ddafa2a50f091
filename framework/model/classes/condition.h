#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// A condition under which rows belong to a classifier.
class TAV_API TAVCondition : public TAVStructuralFeature {
 public:
  TAVCondition() : TAVStructuralFeature(tav::classId<TAVCondition>) {}
};

template <> struct tav::Meta<TAVCondition> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};
