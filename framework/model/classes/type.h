#pragma once

#include "framework/model/classes/namespace_element.h"
#include "framework/model/link.h"

/// A data type of the model.
class TAV_API TAVType : public TAVNamespaceElement {
 public:
  tav::Container<TAVModel> model;
  tav::BackReferences<TAVFeature> features;

 protected:
  using TAVNamespaceElement::TAVNamespaceElement;
};

template <> struct tav::Meta<TAVType> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVType::model>("model", "types"),
                                    link<&TAVType::features>("features", "type")};
};
