#include "views/name_encoding.h"

#include <charconv>

#include "framework/std/text.h"
#include "framework/std/utf8.h"
#include "views/name_characters.h"

namespace tav {
namespace {

/// The first character in a name that is no letter from A to Z, no digit and no low line; nearly every name
/// of a real database has none.
std::size_t findStrange(std::string_view text) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  std::size_t i = 0;
  while (i < text.size() && (isLetter(text[i]) || (i > 0 && text[i] >= '0' && text[i] <= '9'))) ++i;
  return i;
}

bool isNameCharacter(char32_t character, bool first) {
  return contains(kNameStart, character) || (!first && contains(kNameRest, character));
}

void appendCode(std::string& text, char32_t character) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  text += "_x";
  for (int shift = character > 0xFFFF ? 28 : 12; shift >= 0; shift -= 4)
    text += kDigits[(character >> shift) & 15];
  text += '_';
}

bool isXmlCharacter(char32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character <= 0xD7FF || (character >= 0xE000 && character <= 0xFFFD) ||
         (character >= 0x10000 && character <= 0x10FFFF);
}

struct Code {
  char32_t character = 0;
  std::size_t length = 0;  // in bytes; 0 when the text is no code
};

/// The code that `text`, which begins with an underscore, begins with.
Code codeAt(std::string_view text) {
  if (!text.starts_with("_x")) return {};
  const std::size_t end = text.find('_', 2);
  if (end != 6 && end != 10) return {};
  std::uint32_t number = 0;
  const auto [stop, error] = std::from_chars(text.data() + 2, text.data() + end, number, 16);
  if (error != std::errc() || stop != text.data() + end || !isXmlCharacter(number)) return {};
  return {number, end + 1};
}

}  // namespace

std::string encodeName(std::string_view text) {
  const std::size_t strange = findStrange(text);
  if (strange == text.size()) return std::string(text);
  std::string name(text.substr(0, strange));
  const std::string mended = mendedUtf8(text.substr(strange));
  for (std::string_view rest = mended; !rest.empty();) {
    const std::size_t length = utf8Length(rest);
    const char32_t character = utf8Character(rest, length);
    if (isNameCharacter(character, name.empty()))
      name += rest.substr(0, length);
    else
      appendCode(name, character);
    rest.remove_prefix(length);
  }
  return name;
}

std::string decodeName(std::string_view name) {
  std::string text;
  while (!name.empty()) {
    const std::size_t start = std::min(name.find('_'), name.size());
    text += name.substr(0, start);
    name.remove_prefix(start);
    if (name.empty()) break;
    const Code code = codeAt(name);
    if (code.length > 0)
      appendUtf8(text, code.character);
    else
      text += '_';
    name.remove_prefix(std::max<std::size_t>(code.length, 1));
  }
  return text;
}

}  // namespace tav
