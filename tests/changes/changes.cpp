#include "tests/changes/changes.h"

#include <array>

namespace tav::test {

std::string kindOfPlace(std::string_view path) {
  constexpr std::string_view kRoot = "Database/";
  if (const std::size_t root = path.find(kRoot); root != path.npos) path.remove_prefix(root);
  std::string kind;
  bool number = false;
  for (const char c : path) {
    number = c == '[' || (number && c != ']');
    if (!number && c != ']') kind += c;
  }
  return kind;
}

std::string kindOfChange(std::string_view path, Way way) {
  constexpr std::array<std::string_view, 5> kWays{" removed", " doubled", " changed", " swapped", " moved"};
  return kindOfPlace(path).append(kWays[static_cast<std::size_t>(way)]);
}

std::string otherValue(std::string_view value) {
  if (value == "true") return "false";
  if (value == "false") return "true";
  if (!value.empty() && value.find_first_not_of("0123456789") == value.npos) return value == "1" ? "2" : "1";
  return std::string(value) + "X";
}

}  // namespace tav::test
