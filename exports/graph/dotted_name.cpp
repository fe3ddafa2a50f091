#include "exports/graph/dotted_name.h"

#include <algorithm>

namespace tav {
namespace {

constexpr char closingOf(char open) noexcept {
  if (open == '[') return ']';
  return open == '"' || open == '\'' || open == '`' ? open : '\0';
}

/// Reads the part that begins at `i` with an opening bracket or quote, and puts `i` behind it. One that is
/// never closed is a part as it stands.
std::string readEnclosed(std::string_view name, std::size_t& i) {
  const char close = closingOf(name[i]);
  std::string part;
  for (std::size_t at = i + 1; at < name.size(); ++at) {
    if (name[at] == close) {
      if (at + 1 == name.size() || name[at + 1] != close) {
        i = at + 1;
        return part;
      }
      ++at;
    }
    part += name[at];
  }
  part = name.substr(i);
  i = name.size();
  return part;
}

std::string readBare(std::string_view name, std::size_t& i) {
  const std::size_t end = std::min(name.find_first_of(".[", i), name.size());
  const std::string_view part = name.substr(i, end - i);
  i = end;
  return std::string(part);
}

bool isWordCharacter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::string enclosed(std::string_view part, char open, char close) {
  std::string text(1, open);
  for (const char c : part) {
    text += c;
    if (c == close) text += c;
  }
  return text += close;
}

}  // namespace

std::vector<std::string> splitDottedName(std::string_view name) {
  std::vector<std::string> parts;
  std::size_t i = 0;
  while (i <= name.size()) {
    const bool enclosed = i < name.size() && closingOf(name[i]) != '\0';
    parts.push_back(enclosed ? readEnclosed(name, i) : readBare(name, i));
    if (i < name.size() && name[i] == '[') continue;
    // What stands between a closing bracket and the next dot belongs to neither part.
    i = std::min(name.find('.', i), name.size()) + 1;
  }
  return parts;
}

void appendSqlPart(std::string& name, std::string_view part) {
  if (!name.empty()) name += '.';
  if (!part.empty() && std::all_of(part.begin(), part.end(), isWordCharacter))
    name += part;
  else
    name += bracketed(part);
}

std::string bracketed(std::string_view part) {
  return enclosed(part, '[', ']');
}

std::string quoted(std::string_view part) {
  return enclosed(part, '\'', '\'');
}

}  // namespace tav
