#include "framework/serialization/xml_text.h"

#include <array>
#include <cstdint>

#include "framework/std/utf8.h"

namespace tav {
namespace {

/// What stands for an ASCII character; empty when it stands for itself.
constexpr std::string_view escapeOf(unsigned char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return c < 0x20 ? kReplacementCharacter : std::string_view();
  }
}

constexpr std::array<bool, 256> kSpecial = [] {
  std::array<bool, 256> special{};
  for (unsigned c = 0; c < 256; ++c)
    special[c] = c >= 0x80 || !escapeOf(static_cast<unsigned char>(c)).empty();
  return special;
}();

bool isNoncharacter(std::string_view character) {
  return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

}  // namespace

void appendAttributeText(std::string& out, std::string_view text) {
  std::size_t copied = 0;
  std::size_t at = 0;
  const auto replace = [&](std::size_t length, std::string_view by) {
    out.append(text, copied, at - copied).append(by);
    at += length;
    copied = at;
  };
  while (at < text.size()) {
    const auto c = static_cast<unsigned char>(text[at]);
    if (!kSpecial[c]) {
      ++at;
    } else if (c < 0x80) {
      replace(1, escapeOf(c));
    } else if (const std::size_t length = utf8Length(text.substr(at)); length == 0) {
      replace(1, kReplacementCharacter);
    } else if (isNoncharacter(text.substr(at, length))) {
      replace(length, kReplacementCharacter);
    } else {
      at += length;
    }
  }
  out.append(text, copied);
}

}  // namespace tav
