#pragma once

#include "framework/model/classes/concrete_type.h"
#include "framework/model/link.h"

/// A type that the framework knows by itself, under one of its own type names.
class TAV_API TAVBaseType : public TAVConcreteType {
 public:
  TAVBaseType() : TAVConcreteType(tav::classId<TAVBaseType>) {}
  TAVString dataType;
};

template <> struct tav::Meta<TAVBaseType> {
  static constexpr std::array attributes{attribute<&TAVBaseType::dataType>("dataType")};
  static constexpr std::array<LinkRow, 0> links{};
};
