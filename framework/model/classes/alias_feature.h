#pragma once

#include "framework/model/classes/feature.h"
#include "framework/model/link.h"

/// A feature as an alias classifier shows it.
class TAV_API TAVAliasFeature : public TAVFeature {
 public:
  TAVAliasFeature() : TAVFeature(tav::classId<TAVAliasFeature>) {}
};

template <> struct tav::Meta<TAVAliasFeature> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};
