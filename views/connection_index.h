#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "framework/model/class_list.h"
#include "framework/std/string.h"

namespace tav {

/// Finds the first store connection of a model by its native ID. It reads connections that were added since
/// the last look-up, and holds as long as none is deleted and no native ID changes.
class TAV_API ConnectionIndex {
 public:
  explicit ConnectionIndex(const TAVStoreModel& model) : model_(&model) {}

  /// The first connection of this ID, or null. An empty ID has none.
  TAVStoreConnection* find(std::string_view nativeId);

 private:
  const TAVStoreModel* model_;
  std::int32_t read_ = 0;
  std::unordered_map<std::string, TAVStoreConnection*, TextHash, std::equal_to<>> connections_;
};

}  // namespace tav
