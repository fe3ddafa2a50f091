#pragma once

// UTF-8, character by character.

#include <cstddef>
#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// The length in bytes, 1 to 4, of the UTF-8 character that `text` begins with; 0 when it begins with none:
/// an overlong form, half of a surrogate pair, a number above U+10FFFF, or a stray or missing byte.
constexpr std::size_t utf8Length(std::string_view text) noexcept {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const unsigned first = byte(0);
  if (first < 0x80U) return text.empty() ? 0 : 1;
  if (first < 0xC2U || first > 0xF4U || !follows(1)) return 0;
  if (first < 0xE0U) return 2;
  const unsigned second = byte(1);
  if (first < 0xF0U) {
    const bool overlong = first == 0xE0U && second < 0xA0U;
    const bool surrogate = first == 0xEDU && second > 0x9FU;
    return overlong || surrogate || !follows(2) ? 0 : 3;
  }
  const bool overlong = first == 0xF0U && second < 0x90U;
  const bool beyond = first == 0xF4U && second > 0x8FU;
  return overlong || beyond || !follows(2) || !follows(3) ? 0 : 4;
}

/// U+FFFD, which stands for what cannot be read.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// The character of `length` bytes, as utf8Length() gives it, that `text` begins with.
TAV_API char32_t utf8Character(std::string_view text, std::size_t length) noexcept;

/// Appends a character of at most U+10FFFF.
TAV_API void appendUtf8(std::string& text, char32_t c);

}  // namespace tav
