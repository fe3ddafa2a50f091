#pragma once

#include "framework/model/classes/data_package.h"
#include "framework/model/link.h"

/// The schema of a multidimensional database, or of one of its cubes.
class TAV_API TAVOlapSchema : public TAVDataPackage {
 public:
  TAVOlapSchema() : TAVDataPackage(tav::classId<TAVOlapSchema>) {}
};

template <> struct tav::Meta<TAVOlapSchema> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};
