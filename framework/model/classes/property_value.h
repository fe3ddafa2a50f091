#pragma once

#include "framework/model/link.h"

/// The value of a user property on an element.
class TAV_API TAVPropertyValue : public TAVObject {
 public:
  TAVPropertyValue() : TAVObject(tav::classId<TAVPropertyValue>) {}
  TAVString value;
  tav::Container<TAVElement> element;
  tav::Reference<TAVPropertyType> propertyType;
};

template <> struct tav::Meta<TAVPropertyValue> {
  static constexpr std::array attributes{attribute<&TAVPropertyValue::value>("value")};
  static constexpr std::array links{link<&TAVPropertyValue::element>("element", "propertyValues"),
                                    link<&TAVPropertyValue::propertyType>("propertyType", "propertyValues")};
};
