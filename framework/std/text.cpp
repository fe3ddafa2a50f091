#include "framework/std/text.h"

#include <utf8proc.h>

#include <algorithm>

#include "framework/std/utf8.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr char32_t kDottedCapitalI = 0x130;
constexpr char32_t kDotlessSmallI = 0x131;

bool isAscii(std::string_view text) noexcept {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

/// By way of the capital, because several small letters may share one (σ and ς). The two letters I of Turkish
/// equal nothing but themselves.
char32_t foldedCharacter(char32_t c) noexcept {
  if (c == kDottedCapitalI || c == kDotlessSmallI) return c;
  const utf8proc_int32_t capital = utf8proc_toupper(static_cast<utf8proc_int32_t>(c));
  return static_cast<char32_t>(utf8proc_tolower(capital));
}

}  // namespace

std::string_view trimmed(std::string_view text) noexcept {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::size_t skipBlanks(std::string_view text, std::size_t at) noexcept {
  return std::min(text.find_first_not_of(kBlanks, at), text.size());
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
  }
  return lines;
}

void addLine(std::string& lines, std::string_view line) {
  if (!lines.empty()) lines += "\n";
  lines += line;
}

std::string foldedName(std::string_view name) {
  if (isAscii(name)) return foldCase(name);
  std::string folded;
  folded.reserve(name.size());
  while (!name.empty()) {
    const std::size_t length = utf8Length(name);
    if (length == 0)
      folded += name.front();
    else
      appendUtf8(folded, foldedCharacter(utf8Character(name, length)));
    name.remove_prefix(length == 0 ? 1 : length);
  }
  return folded;
}

std::string_view caseFoldingVersion() noexcept {
  return utf8proc_version();
}

bool equalNames(std::string_view a, std::string_view b) {
  if (a == b) return true;
  if (!isAscii(a) || !isAscii(b)) return foldedName(a) == foldedName(b);
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (foldCase(a[i]) != foldCase(b[i])) return false;
  return true;
}

std::string_view beginningOf(std::string_view text, std::size_t bytes) noexcept {
  if (bytes >= text.size()) return text;
  const auto continues = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  std::size_t end = bytes;
  // A character has at most three bytes behind its first; what has more is no UTF-8.
  for (int back = 0; back < 3 && end > 0 && continues(end); ++back) --end;
  return text.substr(0, end);
}

std::string mendedUtf8(std::string_view text) {
  std::string mended;
  mended.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8Length(text);
    mended.append(length == 0 ? kReplacementCharacter : text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return mended;
}

}  // namespace tav
