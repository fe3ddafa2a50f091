#include "framework/std/nearest_word.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "framework/std/edit_distance.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::size_t kLongest = 64;  // bytes: a longer word is no slip of a pen

std::string comparable(std::string_view word) {
  return foldedName(word.substr(std::min(word.size(), word.find_first_not_of('-'))));
}

}  // namespace

std::string offerNearest(std::string_view word, std::span<const std::string_view> words) {
  if (word.size() > kLongest) return {};
  const std::string meant = comparable(word);
  const std::size_t limit = (meant.size() + 1) / 3 + 1;
  std::pair least(limit, std::size_t(0));
  std::string_view nearest;
  std::vector<std::size_t> row;
  for (const std::string_view known : words) {
    const std::string name = comparable(known);
    const std::size_t lengths = std::max(name.size(), meant.size()) - std::min(name.size(), meant.size());
    const std::pair near(editDistance<char>(meant, name, limit, row), lengths);
    if (near >= least) continue;
    least = near;
    nearest = known;
  }
  return nearest.empty() ? "" : "; did you mean '" + std::string(nearest) + "'?";
}

}  // namespace tav
