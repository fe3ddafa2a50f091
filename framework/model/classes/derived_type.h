#pragma once

#include "framework/model/classes/concrete_type.h"
#include "framework/model/link.h"

/// A type as the source names it, derived from a base type.
class TAV_API TAVDerivedType : public TAVConcreteType {
 public:
  TAVDerivedType() : TAVConcreteType(tav::classId<TAVDerivedType>) {}
  TAVString dataType;        ///< the framework's type name
  TAVString nativeDataType;  ///< the source's own text
  std::int32_t length = 0;   ///< in characters; 0 when the type has none
  bool userDefined = false;
  tav::Reference<TAVConcreteType> derivedFromConcreteType;

  void addDerivedFromConcreteType(TAVConcreteType& base);
};

template <> struct tav::Meta<TAVDerivedType> {
  static constexpr std::array attributes{attribute<&TAVDerivedType::dataType>("dataType"),
                                         attribute<&TAVDerivedType::nativeDataType>("nativeDataType"),
                                         attribute<&TAVDerivedType::length>("length"),
                                         attribute<&TAVDerivedType::userDefined>("userDefined")};
  static constexpr std::array links{
      link<&TAVDerivedType::derivedFromConcreteType>("derivedFromConcreteType", "derivedTypes")};
};
