#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

class TAVDOMElement;

/// A cube.
class TAV_API TAVCube : public TAVClassifier {
 public:
  TAVCube() : TAVClassifier(tav::classId<TAVCube>) {}
  tav::Parts<TAVCubeDimensionAssociation> cubeDimensionAssociations;
  /// The element of the definition that the cube was made from. Not owned, neither saved nor copied; an
  /// import clears it before the document goes.
  const TAVDOMElement* sourceElement = nullptr;

  TAVCubeDimensionAssociation& addCubeDimensionAssociation(
      tav::Owned<TAVCubeDimensionAssociation> association);
};

template <> struct tav::Meta<TAVCube> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVCube::cubeDimensionAssociations>("cubeDimensionAssociations", "cube")};
};
