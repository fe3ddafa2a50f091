#include "framework/std/json_text.h"

#include "framework/std/utf8.h"

namespace tav {
namespace {

bool isPlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x20 && byte < 0x80 && c != '"' && c != '\\';
}

void appendEscaped(std::string& text, char c) {
  constexpr std::string_view kShort = "\"\\\b\f\n\r\t";
  constexpr std::string_view kLetters = "\"\\bfnrt";
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::size_t place = kShort.find(c);
  if (place != kShort.npos) {
    text.append({'\\', kLetters[place]});
  } else {
    const auto byte = static_cast<unsigned char>(c);
    text.append("\\u00").append({kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
}

}  // namespace

void appendJsonText(std::string& text, std::string_view value) {
  text += '"';
  while (!value.empty()) {
    std::size_t count = 0;
    while (count < value.size() && isPlain(value[count])) ++count;
    text.append(value.substr(0, count));
    value.remove_prefix(count);
    if (value.empty()) break;
    count = utf8Length(value);
    if (count == 0)
      text += "\\ufffd";
    else if (count == 1)
      appendEscaped(text, value.front());
    else
      text.append(value.substr(0, count));
    value.remove_prefix(count == 0 ? 1 : count);
  }
  text += '"';
}

}  // namespace tav
