#pragma once

#include "framework/model/link.h"

/// One entry of a saved document: holds the model until it is taken out.
class TAV_API TAVModelContent : public TAVObject {
 public:
  TAVModelContent() : TAVObject(tav::classId<TAVModelContent>) {}
  tav::Container<TAVMultiModel> multiModel;
  tav::Parts<TAVModel> models;
};

template <> struct tav::Meta<TAVModelContent> {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array links{link<&TAVModelContent::multiModel>("multiModel", "contents"),
                                    link<&TAVModelContent::models>("models", "content")};
};
