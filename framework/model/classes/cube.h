#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

/// A cube.
class TAV_API TAVCube : public TAVClassifier {
 public:
  TAVCube() : TAVClassifier(tav::classId<TAVCube>) {}
  tav::Parts<TAVCubeDimensionAssociation> cubeDimensionAssociations;

  TAVCubeDimensionAssociation& addCubeDimensionAssociation(
      tav::Owned<TAVCubeDimensionAssociation> association);
};

template <> struct tav::Meta<TAVCube> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVCube::cubeDimensionAssociations>("cubeDimensionAssociations", "cube")};
};
