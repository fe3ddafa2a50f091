#include "exports/answers/markdown.h"

#include <algorithm>

#include "framework/std/printable.h"

namespace tav {

std::string markdownFence(std::initializer_list<std::string_view> texts, std::size_t atLeast) {
  std::size_t longest = atLeast - 1;
  for (const std::string_view text : texts) {
    std::size_t run = 0;
    for (const char c : text) {
      run = c == '`' ? run + 1 : 0;
      longest = std::max(longest, run);
    }
  }
  return std::string(longest + 1, '`');
}

std::string markdownCode(std::string_view text) {
  const std::string line = printable(text);
  const std::string fence = markdownFence({line}, 1);
  const bool blank = line.empty() || line.starts_with('`') || line.ends_with('`') || line.starts_with(' ');
  const std::string_view space = blank ? " " : "";
  return fence + std::string(space).append(line).append(space) + fence;
}

std::string markdownCell(std::string_view text) {
  std::string cell;
  for (const char c : markdownCode(text)) {
    if (c == '|') cell += '\\';
    cell += c;
  }
  return cell;
}

}  // namespace tav
