#pragma once

#include "framework/model/classes/type.h"
#include "framework/model/link.h"

/// A type that values can have.
class TAV_API TAVConcreteType : public TAVType {
 public:
  tav::BackReferences<TAVDerivedType> derivedTypes;

 protected:
  using TAVType::TAVType;
};

template <> struct tav::Meta<TAVConcreteType> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{
      link<&TAVConcreteType::derivedTypes>("derivedTypes", "derivedFromConcreteType")};
};
