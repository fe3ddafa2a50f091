#pragma once

#include "framework/model/classes/classifier.h"
#include "framework/model/link.h"

/// A classifier seen under another name: a dimension as a cube uses it, a linked measure group.
class TAV_API TAVAliasClassifier : public TAVClassifier {
 public:
  TAVAliasClassifier() : TAVClassifier(tav::classId<TAVAliasClassifier>) {}
};

template <> struct tav::Meta<TAVAliasClassifier> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};
