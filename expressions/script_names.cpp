#include "expressions/script_names.h"

namespace tav {

const Defined* ScriptNames::find(const std::string& key) {
  const auto found = defined_.find(key);
  if (found == defined_.end()) return nullptr;
  std::vector<Defined>& known = found->second;
  while (!known.empty() && dropped_.contains(known.back().item)) known.pop_back();
  return known.empty() ? nullptr : &known.back();
}

const Defined* ScriptNames::findAhead(const std::string& key) const {
  if (defined_.contains(key)) return nullptr;
  const auto found = ahead_.find(key);
  return found == ahead_.end() ? nullptr : &found->second;
}

}  // namespace tav
