#pragma once

// The string that crosses every border between the framework and its plug-ins.

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "framework/api.h"

/// A string of bytes, UTF-8 by convention, owned by value. It converts to and from a view, so that the
/// standard library's algorithms serve it; positions and lengths count bytes, from 0.
class TAV_API TAVString {
 public:
  TAVString() = default;
  TAVString(const char* text) : text_(text ? text : "") {}          // NOLINT(google-explicit-constructor)
  TAVString(std::string_view text) : text_(text) {}                 // NOLINT(google-explicit-constructor)
  TAVString(std::string text) noexcept : text_(std::move(text)) {}  // NOLINT(google-explicit-constructor)
  explicit TAVString(char character) : text_(1, character) {}

  /// One shared empty string, for operations that return a reference to a value that is absent.
  static const TAVString& getEmptyString();

  operator std::string_view() const noexcept { return text_; }  // NOLINT(google-explicit-constructor)
  [[nodiscard]] const std::string& str() const noexcept { return text_; }
  [[nodiscard]] const char* c_str() const noexcept { return text_.c_str(); }
  [[nodiscard]] std::string_view view() const noexcept { return text_; }
  [[nodiscard]] bool empty() const noexcept { return text_.empty(); }
  [[nodiscard]] std::int32_t length() const noexcept { return static_cast<std::int32_t>(text_.size()); }

  /// The character at `index`; any index outside the text gives the NUL behind its end.
  char operator[](std::int32_t index) const noexcept {
    return index < 0 || index >= length() ? '\0' : text_[static_cast<std::size_t>(index)];
  }

  TAVString& operator+=(std::string_view more) {
    text_ += more;
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

  friend bool operator==(const TAVString& a, const TAVString& b) noexcept { return a.text_ == b.text_; }
  template <std::convertible_to<std::string_view> Text>
  friend bool operator==(const TAVString& a, const Text& b) noexcept {
    return a.text_ == std::string_view(b);
  }
  friend auto operator<=>(const TAVString& a, const TAVString& b) noexcept { return a.text_ <=> b.text_; }
  friend TAVString operator+(const TAVString& a, const TAVString& b) { return {a.text_ + b.text_}; }
  friend TAVString operator+(const TAVString& a, const char* b) { return {a.text_ + b}; }
  friend TAVString operator+(const char* a, const TAVString& b) { return {a + b.text_}; }

 private:
  std::string text_;
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
