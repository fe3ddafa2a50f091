#pragma once

// What differs between two texts, line by line.

#include <cstdint>
#include <string_view>
#include <vector>

#include "framework/api.h"

namespace tav {

struct DiffLine {
  enum class Kind : std::uint8_t { same, removed, added };
  Kind kind;
  std::string_view line;  ///< without its line end; of a line that is the same, as the old text has it

  friend bool operator==(const DiffLine&, const DiffLine&) = default;
};

/// The lines of both texts in order, those of the old one that are not in the new one in front of what stands
/// in their place. The shortest such list where the texts are alike; where they differ in very many lines,
/// those that occur once in each hold it together, which keeps the cost n log n. The texts must outlive it.
TAV_API std::vector<DiffLine> lineDiff(std::string_view before, std::string_view after);

}  // namespace tav
