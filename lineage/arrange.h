#pragma once

// Lists of items by what they belong to, in one array each: where the items of a key begin, and the items.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tav {

inline constexpr std::uint32_t kNoKey = 0xFFFFFFFF;

/// Puts the numbers 0 to `count` into the order of the keys, from 0 to `keys`, that `keyAt` gives for them,
/// and says where each key's begin. kNoKey leaves a number out.
template <class KeyAt>
void arrangeByKey(std::size_t keys, std::size_t count, KeyAt keyAt, std::vector<std::uint32_t>& offsets,
                  std::vector<std::uint32_t>& items) {
  offsets.assign(keys + 1, 0);
  for (std::uint32_t i = 0; i < count; ++i)
    if (keyAt(i) != kNoKey) ++offsets[keyAt(i) + 1];
  for (std::size_t i = 1; i < offsets.size(); ++i) offsets[i] += offsets[i - 1];
  items.resize(offsets.back());
  std::vector<std::uint32_t> next(offsets.begin(), offsets.end() - 1);
  for (std::uint32_t i = 0; i < count; ++i)
    if (keyAt(i) != kNoKey) items[next[keyAt(i)]++] = i;
}

}  // namespace tav
