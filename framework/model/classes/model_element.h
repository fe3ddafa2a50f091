#pragma once

#include "framework/model/classes/namespace_element.h"
#include "framework/model/link.h"

/// A namespace element that models something: a classifier.
class TAV_API TAVModelElement : public TAVNamespaceElement {
 public:
 protected:
  using TAVNamespaceElement::TAVNamespaceElement;
};

template <> struct tav::Meta<TAVModelElement> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};
