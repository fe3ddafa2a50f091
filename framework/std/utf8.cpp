#include "framework/std/utf8.h"

namespace tav {

char32_t utf8Character(std::string_view text, std::size_t length) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (length <= 1) return byte(0);
  // The first byte has as many leading ones as there are bytes, each other byte six bits of its own.
  char32_t c = byte(0) & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) c = (c << 6U) | (byte(i) & 0x3FU);
  return c;
}

void appendUtf8(std::string& text, char32_t c) {
  const auto tail = [&](unsigned shift) { return static_cast<char>(0x80U | ((c >> shift) & 0x3FU)); };
  if (c < 0x80)
    text += static_cast<char>(c);
  else if (c < 0x800)
    text.append({static_cast<char>(0xC0U | (c >> 6U)), tail(0)});
  else if (c < 0x10000)
    text.append({static_cast<char>(0xE0U | (c >> 12U)), tail(6), tail(0)});
  else
    text.append({static_cast<char>(0xF0U | (c >> 18U)), tail(12), tail(6), tail(0)});
}

}  // namespace tav
