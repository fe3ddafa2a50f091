#pragma once

// The string that crosses every border between the framework and its plug-ins.

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "framework/api.h"
#include "framework/std/sized_text.h"

/// A string of bytes, UTF-8 by convention, owned by value. It converts to and from a view, so that the
/// standard library's algorithms serve it; positions and lengths count bytes, from 0. It holds at most 4 GB,
/// and throws a std::length_error for more. An empty one is a null pointer: most texts of a model are empty.
class TAV_API TAVString {
 public:
  TAVString() = default;
  // NOLINTBEGIN(google-explicit-constructor): texts of all kinds are given as what they are
  TAVString(const char* text) : TAVString(text ? std::string_view(text) : std::string_view()) {}
  TAVString(std::string_view text) : text_(tav::makeSizedText(text)) {}
  TAVString(const std::string& text) : TAVString(std::string_view(text)) {}
  // NOLINTEND(google-explicit-constructor)
  explicit TAVString(char character) : TAVString(std::string_view(&character, 1)) {}
  TAVString(const TAVString& other) : TAVString(other.view()) {}
  TAVString(TAVString&& other) noexcept = default;
  TAVString& operator=(const TAVString& other) {
    if (this != &other) text_ = tav::makeSizedText(other.view());
    return *this;
  }
  TAVString& operator=(TAVString&& other) noexcept = default;
  ~TAVString() = default;

  /// One shared empty string, for operations that return a reference to a value that is absent.
  static const TAVString& getEmptyString();

  operator std::string_view() const noexcept { return view(); }  // NOLINT(google-explicit-constructor)
  [[nodiscard]] std::string str() const { return std::string(view()); }
  [[nodiscard]] const char* c_str() const noexcept { return text_ ? view().data() : ""; }
  [[nodiscard]] std::string_view view() const noexcept { return tav::SizedText(text_.get()); }
  [[nodiscard]] bool empty() const noexcept { return !text_; }
  [[nodiscard]] std::int32_t length() const noexcept { return static_cast<std::int32_t>(view().size()); }

  /// The character at `index`; any index outside the text gives the NUL behind its end.
  char operator[](std::int32_t index) const noexcept {
    return index < 0 || index >= length() ? '\0' : view()[static_cast<std::size_t>(index)];
  }

  /// Cost: the length of both texts; what grows piece by piece is a std::string until it is whole.
  TAVString& operator+=(std::string_view more) {
    text_ = tav::makeSizedText(view(), more);
    return *this;
  }

  /// Whether the texts are equal; without `caseSensitive` the letters A to Z equal a to z.
  [[nodiscard]] bool equals(std::string_view other, bool caseSensitive) const noexcept;
  [[nodiscard]] bool startsWith(std::string_view prefix, bool caseSensitive) const noexcept;
  [[nodiscard]] bool endsWith(std::string_view suffix, bool caseSensitive) const noexcept;

  /// Position of the first `part` at or after `start`, or -1. A negative `start` means the beginning; a
  /// `start` beyond the end finds nothing.
  [[nodiscard]] std::int32_t find(std::string_view part, std::int32_t start = 0) const noexcept;

  /// `count` characters from `start`, fewer where the text ends first; empty when `start` is not inside.
  [[nodiscard]] TAVString mid(std::int32_t start, std::int32_t count) const;
  [[nodiscard]] TAVString mid(std::int32_t start) const;
  [[nodiscard]] TAVString left(std::int32_t count) const;

  [[nodiscard]] TAVString trim() const;               ///< without blanks, tabs and line ends on both sides
  [[nodiscard]] TAVString trimSpaces() const;         ///< without blanks and tabs on both sides
  [[nodiscard]] TAVString trimLeadingSpaces() const;  ///< without blanks and tabs in front
  [[nodiscard]] TAVString toUpper() const;            ///< letters a to z converted, all else kept
  [[nodiscard]] TAVString toLower() const;            ///< letters A to Z converted, all else kept

  /// Every occurrence of `from`, found from left to right without overlap, replaced by `to`. An empty
  /// `from` changes nothing.
  [[nodiscard]] TAVString replaceAll(std::string_view from, std::string_view to) const;

  friend bool operator==(const TAVString& a, const TAVString& b) noexcept { return a.view() == b.view(); }
  template <std::convertible_to<std::string_view> Text>
  friend bool operator==(const TAVString& a, const Text& b) noexcept {
    return a.view() == std::string_view(b);
  }
  friend auto operator<=>(const TAVString& a, const TAVString& b) noexcept { return a.view() <=> b.view(); }
  friend TAVString operator+(const TAVString& a, const TAVString& b) { return sum(a, b); }
  friend TAVString operator+(const TAVString& a, const char* b) { return sum(a, b); }
  friend TAVString operator+(const char* a, const TAVString& b) { return sum(a, b); }

 private:
  static TAVString sum(std::string_view a, std::string_view b) {
    TAVString both;
    both.text_ = tav::makeSizedText(a, b);
    return both;
  }

  std::unique_ptr<char[]> text_;
};

template <> struct std::hash<TAVString> {
  std::size_t operator()(const TAVString& s) const noexcept { return std::hash<std::string_view>{}(s); }
};

namespace tav {

/// Hashes text for tables that are searched with a view.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
};

/// The byte with A to Z turned to a to z: the one idea of letter case in the system.
constexpr char foldCase(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
/// `text` folded, as a key for look-ups that ignore letter case.
TAV_API std::string foldCase(std::string_view text);

}  // namespace tav

/// Compares like strcmp, the letters A to Z ignoring their case.
extern "C" TAV_API int _stricmp(const char* a, const char* b);
/// Hash of a NUL-terminated text, the same in every process.
extern "C" TAV_API std::uint32_t stringHashCode(const char* text);
