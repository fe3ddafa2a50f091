#include "framework/std/printable.h"

#include <algorithm>

#include "framework/std/utf8.h"

namespace tav {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

bool isControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

/// Bidirectional marks, which let a text be read as another, and separators of lines and paragraphs.
bool deceives(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

void appendHex(std::string& shown, char32_t number, unsigned digits) {
  for (unsigned digit = digits; digit-- > 0;) shown += kDigits[(number >> (4U * digit)) & 0xFU];
}

void appendEscape(std::string& shown, char32_t c) {
  if (c == '\n' || c == '\t' || c == '\r') {
    shown.append({'\\', c == '\n' ? 'n' : c == '\t' ? 't' : 'r'});
  } else if (c < 0x100) {
    appendHex(shown += "\\x", c, 2);
  } else {
    appendHex(shown += "\\u", c, 4);
  }
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    // A byte that belongs to no character is judged by itself: some terminals obey it.
    const char32_t c = length == 0 ? static_cast<unsigned char>(text.front()) : utf8Character(text, length);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(length, 1));
    if (isControl(c) || deceives(c))
      appendEscape(shown, c);
    else
      shown.append(bytes);
    text.remove_prefix(bytes.size());
  }
  return shown;
}

}  // namespace tav
