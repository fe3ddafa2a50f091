#include "framework/std/mask.h"

#include <array>

#include "framework/std/string.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::array<std::string_view, 2> kKeys{"password", "pwd"};

std::size_t skipBlanks(std::string_view text, std::size_t i) {
  return std::min(text.find_first_not_of(kBlanks, i), text.size());
}

bool equalsFolded(std::string_view text, std::string_view folded) {
  for (std::size_t i = 0; i < folded.size(); ++i)
    if (i >= text.size() || foldCase(text[i]) != folded[i]) return false;
  return true;
}

/// Where the value begins when a key of a password stands at `i`; else 0.
std::size_t valueBehindKey(std::string_view text, std::size_t i) {
  for (const std::string_view key : kKeys) {
    if (!equalsFolded(text.substr(i), key)) continue;
    const std::size_t sign = skipBlanks(text, i + key.size());
    if (sign < text.size() && text[sign] == '=') return sign + 1;
  }
  return 0;
}

/// The end of a part that begins with a quote or a brace at `i`; a doubled closing character is a part of it.
std::size_t endOfQuoted(std::string_view text, std::size_t i) {
  const char close = text[i] == '{' ? '}' : text[i];
  for (++i; i < text.size(); ++i) {
    if (text[i] != close) continue;
    if (i + 1 == text.size() || text[i + 1] != close) return i + 1;
    ++i;
  }
  return text.size();
}

std::size_t endOfValue(std::string_view text, std::size_t i) {
  if (i < text.size() && (text[i] == '"' || text[i] == '\'' || text[i] == '{')) i = endOfQuoted(text, i);
  return std::min(text.find_first_of(";\r\n", i), text.size());
}

}  // namespace

std::string maskPasswords(std::string_view text) {
  if (text.find('=') == text.npos) return std::string(text);
  std::string masked;
  std::size_t done = 0;
  for (std::size_t i = skipBlanks(text, 0); i < text.size();) {
    if (const std::size_t value = valueBehindKey(text, i); value != 0) {
      masked.append(text.substr(done, value - done)).append("***");
      done = i = endOfValue(text, skipBlanks(text, value));
    }
    i = text.find_first_of(";'\"\r\n", i);
    if (i != text.npos) i = skipBlanks(text, i + 1);
  }
  return masked.append(text.substr(done));
}

}  // namespace tav
