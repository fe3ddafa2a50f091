#include "framework/std/string.h"

#include <algorithm>

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kWhiteSpace = " \t\r\n";

bool sameIgnoringCase(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return tav::foldCase(x) == tav::foldCase(y);
         });
}

bool same(std::string_view a, std::string_view b, bool caseSensitive) noexcept {
  return caseSensitive ? a == b : sameIgnoringCase(a, b);
}

std::string_view withoutLeading(std::string_view text, std::string_view set) noexcept {
  const std::size_t first = text.find_first_not_of(set);
  return first == text.npos ? std::string_view() : text.substr(first);
}

std::string_view withoutTrailing(std::string_view text, std::string_view set) noexcept {
  return text.substr(0, text.find_last_not_of(set) + 1);
}

}  // namespace

const TAVString& TAVString::getEmptyString() {
  static const TAVString empty;
  return empty;
}

bool TAVString::equals(std::string_view other, bool caseSensitive) const noexcept {
  return same(view(), other, caseSensitive);
}

bool TAVString::startsWith(std::string_view prefix, bool caseSensitive) const noexcept {
  return same(view().substr(0, prefix.size()), prefix, caseSensitive);
}

bool TAVString::endsWith(std::string_view suffix, bool caseSensitive) const noexcept {
  return suffix.size() <= view().size() &&
         same(view().substr(view().size() - suffix.size()), suffix, caseSensitive);
}

std::int32_t TAVString::find(std::string_view part, std::int32_t start) const noexcept {
  const std::size_t found = view().find(part, start < 0 ? 0 : static_cast<std::size_t>(start));
  return found == std::string_view::npos ? -1 : static_cast<std::int32_t>(found);
}

TAVString TAVString::mid(std::int32_t start, std::int32_t count) const {
  if (start < 0 || start >= length() || count <= 0) return {};
  return view().substr(static_cast<std::size_t>(start), static_cast<std::size_t>(count));
}

TAVString TAVString::mid(std::int32_t start) const {
  return mid(start, length());
}

TAVString TAVString::left(std::int32_t count) const {
  return mid(0, count);
}

TAVString TAVString::trim() const {
  return withoutTrailing(withoutLeading(view(), kWhiteSpace), kWhiteSpace);
}

TAVString TAVString::trimSpaces() const {
  return withoutTrailing(withoutLeading(view(), kBlanks), kBlanks);
}

TAVString TAVString::trimLeadingSpaces() const {
  return withoutLeading(view(), kBlanks);
}

TAVString TAVString::toUpper() const {
  std::string upper = str();
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

TAVString TAVString::toLower() const {
  return tav::foldCase(view());
}

TAVString TAVString::replaceAll(std::string_view from, std::string_view to) const {
  if (from.empty()) return *this;
  const std::string_view text = view();
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, done)) {
    result.append(text, done, at - done).append(to);
    done = at + from.size();
  }
  return result.append(text, done);
}

std::string tav::foldCase(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = foldCase(c);
  return folded;
}

extern "C" int _stricmp(const char* a, const char* b) {
  while (*a != '\0' && tav::foldCase(*a) == tav::foldCase(*b)) ++a, ++b;
  return static_cast<unsigned char>(tav::foldCase(*a)) - static_cast<unsigned char>(tav::foldCase(*b));
}

extern "C" std::uint32_t stringHashCode(const char* text) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (; *text != '\0'; ++text) hash = (hash ^ static_cast<unsigned char>(*text)) * 16777619U;
  return hash;
}
