#include "framework/std/dotted_name.h"

#include <algorithm>

#include "framework/std/text.h"

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
  return std::string(trimmed(part));
}

bool isLetter(char c) noexcept {
  const char folded = foldCase(c);
  return (folded >= 'a' && folded <= 'z') || c == '_' || c == '#' || static_cast<unsigned char>(c) >= 0x80U;
}

/// Whether SQL takes the text for a name without brackets. Reserved words are not told apart.
bool isPlain(std::string_view part) noexcept {
  return isLetter(part.front()) && std::all_of(part.begin(), part.end(), [](char c) {
           return isLetter(c) || (c >= '0' && c <= '9') || c == '$' || c == '@';
         });
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
    i = skipBlanks(name, i);
    const bool isEnclosed = i < name.size() && closingOf(name[i]) != '\0';
    parts.push_back(isEnclosed ? readEnclosed(name, i) : readBare(name, i));
    if (i < name.size() && name[i] == '[') continue;
    // What stands between a closing bracket and the next dot belongs to neither part.
    i = std::min(name.find('.', i), name.size()) + 1;
  }
  return parts;
}

std::string unquotedPart(std::string_view part) {
  if (part.starts_with("N'")) part.remove_prefix(1);
  const char close = part.size() < 2 ? '\0' : closingOf(part.front());
  if (close == '\0' || part.back() != close) return std::string(part);
  std::size_t i = 0;
  return readEnclosed(part, i);
}

std::size_t namePartLength(std::string_view reference) noexcept {
  for (std::size_t place = 0;;) {
    if (place < reference.size() && reference[place] == '&') ++place;
    const char open = place < reference.size() ? reference[place] : '\0';
    const char close = open == '[' ? ']' : open;
    if (open == '[' || open == '"' || open == '`') {
      do {
        place = reference.find(close, place + 1);
        if (place == reference.npos) return reference.size();
        ++place;
      } while (place < reference.size() && reference[place] == close);
    } else {
      place = reference.find_first_of(".&", place);
      if (place == reference.npos) return reference.size();
    }
    if (place >= reference.size() || reference[place] != '&') return place;
  }
}

std::string joinDottedName(const std::vector<std::string>& parts) {
  std::string name;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) name += '.';
    if (part.empty() || isPlain(part))
      name += part;
    else
      name += bracketed(part);
  }
  return name;
}

void appendDottedPart(std::string& name, std::string_view part) {
  if (!name.empty()) name += '.';
  name += part.empty() || isPlain(part) ? std::string(part) : bracketed(part);
}

std::string bracketed(std::string_view part) {
  return enclosed(part, '[', ']');
}

std::string singleQuoted(std::string_view part) {
  return enclosed(part, '\'', '\'');
}

}  // namespace tav
