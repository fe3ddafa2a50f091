#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// An attribute of a dimension.
class TAV_API TAVDimensionAttribute : public TAVStructuralFeature {
 public:
  TAVDimensionAttribute() : TAVStructuralFeature(tav::classId<TAVDimensionAttribute>) {}
  tav::BackReferences<TAVLevelAttribute> levelAttributes;
};

template <> struct tav::Meta<TAVDimensionAttribute> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVDimensionAttribute::levelAttributes>("levelAttributes", "dimensionAttribute")};
};
