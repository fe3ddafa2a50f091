#pragma once

#include "framework/model/classes/namespace_element.h"
#include "framework/model/link.h"

/// Another name of a model object: a perspective of a cube.
class TAV_API TAVSynonym : public TAVNamespaceElement {
 public:
  TAVSynonym() : TAVNamespaceElement(tav::classId<TAVSynonym>) {}
  tav::Container<TAVModelObject> modelObject;
};

template <> struct tav::Meta<TAVSynonym> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVSynonym::modelObject>("modelObject", "synonyms")};
};
