#include "framework/serialization/ordered_groups.h"

#include <algorithm>

namespace tav {

void OrderedGroups::add(std::uint8_t kind, std::string_view text, std::uint32_t entry,
                        std::initializer_list<ItemId> items) {
  std::uint32_t first = 0;
  for (const ItemId item : items) first = std::max(first, next_[item]);
  std::vector<std::uint32_t>& known = byLabel_[{kind, text.data()}];
  const auto found = std::lower_bound(known.begin(), known.end(), first);
  const bool isNew = found == known.end();
  const auto group = isNew ? static_cast<std::uint32_t>(groups_.size()) : *found;
  if (isNew) {
    groups_.push_back({kind, text, {}});
    known.push_back(group);
  }
  groups_[group].entries.push_back(entry);
  for (const ItemId item : items) next_[item] = group + step_;
}

}  // namespace tav
