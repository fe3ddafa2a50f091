#pragma once

#include "framework/model/link.h"

/// The root of a saved document: the models that were saved together.
class TAV_API TAVMultiModel : public TAVObject {
 public:
  TAVMultiModel() : TAVObject(tav::classId<TAVMultiModel>) {}
  tav::Parts<TAVModelContent> contents;
};

template <> struct tav::Meta<TAVMultiModel> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVMultiModel::contents>("contents", "multiModel")};
};
