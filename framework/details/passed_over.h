#pragma once

// What a definition holds and no answer tells of. This is the one list: whatever is neither in the model nor
// in the details stands here, and answers that it could have changed say so.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "framework/api.h"

namespace tav {

enum class PassedOver : std::uint8_t {
  designerLayout,  ///< places of boxes on a designer's canvas
  timeStamps,      ///< when something was created, processed, changed
  processing,      ///< what the server noted while processing: states and sizes
  designerNotes,   ///< what editors note for themselves
  rowNumbers,      ///< columns of row numbers, which the server makes
  secrets,         ///< passwords and keys, never kept in any form
  otherCommands,   ///< further commands of a script
};
inline constexpr std::size_t kPassedOverCount = static_cast<std::size_t>(PassedOver::otherCommands) + 1;

struct PassedOverRow {
  std::string_view name;    ///< in saved documents
  std::string_view words;   ///< for people, plural: "time stamps"
  bool hasMeaning = false;  ///< whether an answer could be another one for it
};

TAV_API const PassedOverRow& rowOf(PassedOver what) noexcept;
/// What has that name, or nothing.
TAV_API std::optional<PassedOver> passedOverOf(std::string_view name) noexcept;

}  // namespace tav
