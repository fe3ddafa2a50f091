#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/api.h"

namespace tav {

/// Names, to find the one that somebody may have meant. A search looks at a bounded number of names of nearly
/// the same length with the same beginning or end, so that its cost does not grow with the list.
class TAV_API Spellings {
 public:
  void add(std::string_view name);
  /// The name that differs least from this one, letter case ignored; empty when none comes near. It stays
  /// until another name is added.
  [[nodiscard]] std::string_view nearest(std::string_view name);

 private:
  struct Name {
    std::size_t begin;  // in `text_`
    std::size_t length;
    std::string folded;  // of those in buckets
  };
  [[nodiscard]] std::string_view shown(const Name& name) const {
    return std::string_view(text_).substr(name.begin, name.length);
  }
  void fillBuckets();
  static std::string bucketOf(char side, std::string_view text, std::size_t length);

  std::string text_;  // of all names
  std::vector<Name> names_;
  std::size_t inBuckets_ = 0;  // names: the rest waits for a search, as most lists are never searched
  std::unordered_map<std::string, std::vector<std::uint32_t>> buckets_;
};

}  // namespace tav
