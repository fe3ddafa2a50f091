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
  /// The name that differs least from this one, letter case ignored; empty when none comes near.
  [[nodiscard]] std::string_view nearest(std::string_view name) const;

 private:
  struct Name {
    std::string shown;
    std::string folded;
  };
  static std::string bucketOf(char side, std::string_view text, std::size_t length);

  std::vector<Name> names_;
  std::unordered_map<std::string, std::vector<std::uint32_t>> buckets_;
};

}  // namespace tav
