#pragma once

// What names of scripts mean at one place of them: scripts are run in their order.

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/details/details.h"

namespace tav {

/// What a statement defines.
struct Defined {
  ItemId item;
  bool isSet;
};

/// Names by a key that tells them apart. Of several definitions of a name the last one counts; what is
/// dropped counts no more.
class ScriptNames {
 public:
  /// A definition further on: expressions may name what stands behind them, as long as nothing before them
  /// has the name.
  void foresee(const std::string& key, Defined defined) { ahead_.try_emplace(key, defined); }
  void define(const std::string& key, Defined defined) { defined_[key].push_back(defined); }
  /// What was dropped has no name from here on.
  void drop(ItemId item) { dropped_.insert(item); }

  [[nodiscard]] bool empty() const noexcept { return ahead_.empty() && defined_.empty(); }
  /// What has the name there, or null.
  [[nodiscard]] const Defined* find(const std::string& key);
  /// What will have a name that nothing has had before, or null.
  [[nodiscard]] const Defined* findAhead(const std::string& key) const;

 private:
  std::unordered_map<std::string, Defined> ahead_;
  std::unordered_map<std::string, std::vector<Defined>> defined_;  // the last one counts
  std::unordered_set<ItemId> dropped_;
};

}  // namespace tav
