#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// A dimension attribute as a level shows it.
class TAV_API TAVLevelAttribute : public TAVStructuralFeature {
 public:
  TAVLevelAttribute() : TAVStructuralFeature(tav::classId<TAVLevelAttribute>) {}
  tav::Reference<TAVDimensionAttribute> dimensionAttribute;
  tav::BackReferences<TAVLevelKey> levelKeys;
  tav::BackReferences<TAVLevel> defaultOf;

  void addDimensionAttribute(TAVDimensionAttribute& attribute);
};

template <> struct tav::Meta<TAVLevelAttribute> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVLevelAttribute::dimensionAttribute>("dimensionAttribute", "levelAttributes"),
      link<&TAVLevelAttribute::levelKeys>("levelKeys", "levelAttributes"),
      link<&TAVLevelAttribute::defaultOf>("defaultOf", "defaultLevelAttribute")};
};
