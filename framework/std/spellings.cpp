#include "framework/std/spellings.h"

#include <algorithm>
#include <array>

#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::size_t kSide = 2;           // bytes of the beginning or end that have to be equal
constexpr std::size_t kBucketSize = 64;    // names that are looked at for one length and side
constexpr std::size_t kLongestName = 100;  // bytes: longer ones are no slip of a pen
constexpr std::size_t kMostDifferences = 2;

/// How many characters have to be changed, added or taken away, at most `limit + 1`.
std::size_t differences(std::string_view a, std::string_view b, std::size_t limit) {
  std::array<std::size_t, kLongestName + 1> row{};
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    std::size_t least = row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
      least = std::min(least, row[j]);
    }
    if (least > limit) return limit + 1;
  }
  return std::min(row[b.size()], limit + 1);
}

}  // namespace

std::string Spellings::bucketOf(char side, std::string_view text, std::size_t length) {
  const std::string_view part =
      side == '<' ? text.substr(0, kSide) : text.substr(text.size() - std::min(kSide, text.size()));
  return std::string(1, side).append(std::to_string(length)).append(1, ' ').append(part);
}

void Spellings::add(std::string_view name) {
  std::string folded = foldedName(name);
  if (folded.size() < kSide || folded.size() > kLongestName) return;
  const auto place = static_cast<std::uint32_t>(names_.size());
  for (const char side : {'<', '>'}) {
    std::vector<std::uint32_t>& bucket = buckets_[bucketOf(side, folded, folded.size())];
    if (bucket.size() < kBucketSize) bucket.push_back(place);
  }
  names_.push_back({std::string(name), std::move(folded)});
}

std::string_view Spellings::nearest(std::string_view name) const {
  const std::string folded = foldedName(name);
  if (folded.size() < kSide || folded.size() > kLongestName) return {};
  std::size_t least = std::min(kMostDifferences, folded.size() / 3) + 1;
  const Name* found = nullptr;
  for (std::size_t length = folded.size() - std::min(folded.size(), kMostDifferences);
       length <= folded.size() + kMostDifferences; ++length) {
    for (const char side : {'<', '>'}) {
      const auto bucket = buckets_.find(bucketOf(side, folded, length));
      if (bucket == buckets_.end()) continue;
      for (const std::uint32_t place : bucket->second) {
        const std::size_t count = differences(folded, names_[place].folded, least);
        if (count >= least) continue;
        least = count;
        found = &names_[place];
      }
    }
  }
  return found ? std::string_view(found->shown) : std::string_view();
}

}  // namespace tav
