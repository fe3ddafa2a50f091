#include "framework/details/passed_over.h"

#include <algorithm>
#include <array>

namespace tav {
namespace {

// In the order of PassedOver.
constexpr std::array<PassedOverRow, kPassedOverCount> kRows{{
    {"designerLayout", "designer layout"},
    {"timeStamps", "time stamps"},
    {"processing", "states and sizes of the last processing"},
    {"designerNotes", "notes of editors"},
    {"rowNumbers", "row-number columns"},
    {"secrets", "passwords and keys"},
    {"otherCommands", "further commands", true},
}};

}  // namespace

const PassedOverRow& rowOf(PassedOver what) noexcept {
  return kRows[static_cast<std::size_t>(what)];
}

std::optional<PassedOver> passedOverOf(std::string_view name) noexcept {
  const auto found =
      std::find_if(kRows.begin(), kRows.end(), [&](const PassedOverRow& row) { return row.name == name; });
  if (found == kRows.end()) return std::nullopt;
  return static_cast<PassedOver>(found - kRows.begin());
}

}  // namespace tav
