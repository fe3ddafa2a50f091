#include "exports/answers/markdown.h"

#include <algorithm>

#include "framework/std/printable.h"

namespace tav {

std::string markdownCode(std::string_view text) {
  std::string line;
  std::size_t run = 0;
  std::size_t longest = 0;
  for (const char c : printable(text)) {
    run = c == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
    if (c == '|') line += '\\';  // ends a cell even within code
    line += c;
  }
  const std::string fence(longest + 1, '`');
  const bool blank = line.empty() || line.starts_with('`') || line.ends_with('`') || line.starts_with(' ');
  const std::string_view space = blank ? " " : "";
  return fence + std::string(space).append(line).append(space) + fence;
}

}  // namespace tav
