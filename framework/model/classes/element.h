#pragma once

#include "framework/model/link.h"

/// What every element of a model carries: texts about its origin, and user properties.
class TAV_API TAVElement : public TAVObject {
 public:
  TAVString description;
  /// The ID of the source object; erased at the end of an import.
  TAVString nativeId;
  /// A label of the source kind, for example "Cube"; compared exactly.
  TAVString nativeType;
  /// User properties: a value for each property type that has one.
  tav::Parts<TAVPropertyValue> propertyValues;

 protected:
  using TAVObject::TAVObject;
};

template <> struct tav::Meta<TAVElement> {
  static constexpr std::array attributes{attribute<&TAVElement::description>("description"),
                                         attribute<&TAVElement::nativeId>("nativeId"),
                                         attribute<&TAVElement::nativeType>("nativeType")};
  static constexpr std::array links{link<&TAVElement::propertyValues>("propertyValues", "element")};
};
