#include "framework/std/spellings.h"

#include <algorithm>

#include "framework/std/edit_distance.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::size_t kSide = 2;           // bytes of the beginning or end that have to be equal
constexpr std::size_t kBucketSize = 64;    // names that are looked at for one length and side
constexpr std::size_t kLongestName = 100;  // bytes: longer ones are no slip of a pen
constexpr std::size_t kMostDifferences = 2;

}  // namespace

std::string Spellings::bucketOf(char side, std::string_view text, std::size_t length) {
  const std::string_view part =
      side == '<' ? text.substr(0, kSide) : text.substr(text.size() - std::min(kSide, text.size()));
  return std::string(1, side).append(std::to_string(length)).append(1, ' ').append(part);
}

void Spellings::add(std::string_view name) {
  if (name.size() < kSide || name.size() > kLongestName) return;
  names_.push_back({text_.size(), name.size(), {}});
  text_ += name;
}

void Spellings::fillBuckets() {
  for (; inBuckets_ < names_.size(); ++inBuckets_) {
    Name& name = names_[inBuckets_];
    name.folded = foldedName(shown(name));
    for (const char side : {'<', '>'}) {
      std::vector<std::uint32_t>& bucket = buckets_[bucketOf(side, name.folded, name.folded.size())];
      if (bucket.size() < kBucketSize) bucket.push_back(static_cast<std::uint32_t>(inBuckets_));
    }
  }
}

std::string_view Spellings::nearest(std::string_view name) {
  const std::string folded = foldedName(name);
  if (folded.size() < kSide || folded.size() > kLongestName) return {};
  fillBuckets();
  std::size_t least = std::min(kMostDifferences, folded.size() / 3) + 1;
  const Name* found = nullptr;
  std::vector<std::size_t> row;
  for (std::size_t length = folded.size() - std::min(folded.size(), kMostDifferences);
       length <= folded.size() + kMostDifferences; ++length) {
    for (const char side : {'<', '>'}) {
      const auto bucket = buckets_.find(bucketOf(side, folded, length));
      if (bucket == buckets_.end()) continue;
      for (const std::uint32_t place : bucket->second) {
        const std::size_t count = editDistance<char>(folded, names_[place].folded, least, row);
        if (count >= least) continue;
        least = count;
        found = &names_[place];
      }
    }
  }
  return found ? shown(*found) : std::string_view();
}

}  // namespace tav
