#pragma once

#include "framework/model/classes/element.h"
#include "framework/model/link.h"

/// A user property that elements of one element type can have.
class TAV_API TAVPropertyType : public TAVElement {
 public:
  TAVPropertyType() : TAVElement(tav::classId<TAVPropertyType>) {}
  std::int32_t elementType = 0;
  TAVDesignLevelType designLevel;
  TAVString group;
  TAVString dataType;
  tav::Container<TAVModel> model;
  tav::BackReferences<TAVPropertyValue> propertyValues;
};

template <> struct tav::Meta<TAVPropertyType> {
  static constexpr std::array attributes{attribute<&TAVPropertyType::elementType>("elementType"),
                                         attribute<&TAVPropertyType::designLevel>("designLevel"),
                                         attribute<&TAVPropertyType::group>("group"),
                                         attribute<&TAVPropertyType::dataType>("dataType")};
  static constexpr std::array links{link<&TAVPropertyType::model>("model", "propertyTypes"),
                                    link<&TAVPropertyType::propertyValues>("propertyValues", "propertyType")};
};
