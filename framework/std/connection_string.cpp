#include "framework/std/connection_string.h"

#include <algorithm>

#include "framework/std/text.h"

namespace tav {
namespace {

constexpr char closingOf(char open) noexcept {
  if (open == '{') return '}';
  return open == '"' || open == '\'' ? open : '\0';
}

/// The end of a part that begins with a quote or a brace at `i`; a doubled closing character is a part of it.
std::size_t endOfQuoted(std::string_view text, std::size_t i) {
  const char close = closingOf(text[i]);
  for (++i; i < text.size(); ++i) {
    if (text[i] != close) continue;
    if (i + 1 == text.size() || text[i + 1] != close) return i + 1;
    ++i;
  }
  return text.size();
}

/// A value as it is written, blanks and quotes taken off.
std::string valueOf(std::string_view written) {
  written = trimmed(written);
  const char close = written.empty() ? '\0' : closingOf(written.front());
  if (close == '\0') return std::string(written);
  std::string value;
  for (std::size_t i = 1; i < written.size(); ++i) {
    if (written[i] == close && (i + 1 == written.size() || written[++i] != close)) break;
    value += written[i];
  }
  return value;
}

/// Line ends and tabs as blanks, and never two blanks in a row.
TAVString squeezed(std::string_view text) {
  std::string result;
  for (char c : text) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    if (c != ' ' || result.empty() || result.back() != ' ') result += c;
  }
  return result;
}

}  // namespace

ConnectionString::ConnectionString(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t sign = std::min(text.find_first_of("=;", i), text.size());
    if (sign == text.size() || text[sign] == ';') {
      i = sign + 1;
      continue;
    }
    const std::size_t end = endOfConnectionValue(text, sign + 1);
    values_.try_emplace(foldCase(trimmed(text.substr(i, sign - i))),
                        valueOf(text.substr(sign + 1, end - sign - 1)));
    // What stands between a closing quote and the next semicolon belongs to neither.
    i = std::min(text.find(';', end), text.size()) + 1;
  }
}

std::string_view ConnectionString::get(std::initializer_list<std::string_view> keys) const {
  for (const std::string_view key : keys) {
    const auto value = values_.find(key);
    if (value != values_.end() && !value->second.empty()) return value->second;
  }
  return {};
}

std::size_t endOfConnectionValue(std::string_view text, std::size_t begin) {
  const std::size_t i = skipBlanks(text, begin);
  if (i < text.size() && closingOf(text[i]) != '\0') return endOfQuoted(text, i);
  return std::min(text.find(';', begin), text.size());
}

}  // namespace tav

TAVString getConnectionStringValue(const TAVString& connectionString, const TAVString& key) {
  const TAVString text = tav::squeezed(connectionString);
  const std::int32_t at = text.toLower().find(key.toLower());
  if (at < 0) return {};
  TAVString value = text.mid(at + key.length());
  const std::int32_t end = value.find(";");
  if (end >= 0) value = value.left(end);
  return value.replaceAll("=", "").replaceAll("\"", "").trimSpaces();
}
