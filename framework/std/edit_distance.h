#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tav {

/// The number of characters to insert, remove or replace between two texts, `limit` when it is not less.
/// `row` is room for the work.
template <class Character>
std::size_t editDistance(std::basic_string_view<Character> a, std::basic_string_view<Character> b,
                         std::size_t limit, std::vector<std::size_t>& row) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) >= limit) return limit;
  row.resize(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    std::size_t least = row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
      least = std::min(least, row[j]);
    }
    if (least >= limit) return limit;
  }
  return std::min(row.back(), limit);
}

}  // namespace tav
