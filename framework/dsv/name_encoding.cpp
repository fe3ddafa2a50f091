#include "framework/dsv/name_encoding.h"

#include <charconv>

#include "framework/dsv/name_characters.h"
#include "framework/std/utf8.h"

namespace tav {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// The character at the start of `text`, which is `length` bytes long there; length 0 is no UTF-8.
char32_t characterAt(std::string_view text, std::size_t length) {
  const auto byte = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(text[i])); };
  switch (length) {
    case 0:
      return kReplacement;
    case 1:
      return byte(0);
    case 2:
      return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
    case 3:
      return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    default:
      return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
  }
}

void appendCharacter(std::string& text, char32_t character) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
  const auto follow = [&](int shift) { put(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    follow(6);
  } else {
    put(0xF0 | character >> 18);
    follow(12);
    follow(6);
  }
  follow(0);
}

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
  std::string name(text.substr(0, strange));
  for (std::string_view rest = text.substr(strange); !rest.empty();) {
    const std::size_t length = utf8Length(rest);
    const char32_t character = characterAt(rest, length);
    if (isNameCharacter(character, name.empty()))
      name += rest.substr(0, length);
    else
      appendCode(name, character);
    rest.remove_prefix(std::max<std::size_t>(length, 1));
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
      appendCharacter(text, code.character);
    else
      text += '_';
    name.remove_prefix(std::max<std::size_t>(code.length, 1));
  }
  return text;
}

}  // namespace tav
