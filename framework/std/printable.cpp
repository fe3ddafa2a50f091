#include "framework/std/printable.h"

namespace tav {

std::string printable(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F)
      shown += c;
    else if (c == '\n' || c == '\t' || c == '\r')
      shown.append({'\\', c == '\n' ? 'n' : c == '\t' ? 't' : 'r'});
    else
      shown.append({'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
  return shown;
}

}  // namespace tav
