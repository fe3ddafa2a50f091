#pragma once

#include "framework/model/classes/model_object.h"
#include "framework/model/link.h"

/// A cube's use of a database dimension, under the name that the cube gives it.
class TAV_API TAVCubeDimensionAssociation : public TAVModelObject {
 public:
  TAVCubeDimensionAssociation() : TAVModelObject(tav::classId<TAVCubeDimensionAssociation>) {}
  tav::Container<TAVCube> cube;
  tav::Reference<TAVDimension> dimension;

  void addDimension(TAVDimension& used);
};

template <> struct tav::Meta<TAVCubeDimensionAssociation> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVCubeDimensionAssociation::cube>("cube", "cubeDimensionAssociations"),
      link<&TAVCubeDimensionAssociation::dimension>("dimension", "cubeDimensionAssociations")};
};
