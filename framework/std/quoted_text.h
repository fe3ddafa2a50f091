#pragma once

// Literals in texts of any language: connection strings, M, SQL, and JSON that may itself be quoted.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tav {

constexpr bool isIn(char c, std::string_view characters) noexcept {
  return characters.find(c) != characters.npos;
}

constexpr bool isQuote(char c) noexcept {
  return c == '"' || c == '\'';
}

/// A value in quotes, braces or brackets.
struct Literal {
  enum class Form : std::uint8_t {
    quotes,         ///< a quote inside is doubled
    doubledQuotes,  ///< a literal within a literal: `""a""`, and a quote inside is `""""`
    escapedQuotes,  ///< a quote inside has a backslash; see `backslashes`
    braces,         ///< a closing brace inside is doubled
    nested,         ///< an object or a list of JSON
  };
  std::size_t begin;  ///< of what stands inside
  Form form;
  char close;
  /// In front of each quote: JSON that is itself quoted has one, quoted again three.
  std::size_t backslashes = 0;
  /// With escapes: the quotes of the literal are doubled as well, as M is that stands in JSON.
  bool doubled = false;
};

/// A text in which values stand in quotes of their own or of the text around them. Places behind its end are
/// allowed and hold '\0'.
class QuotedText {
 public:
  explicit QuotedText(std::string_view text) : text_(text) {}

  [[nodiscard]] std::string_view text() const noexcept { return text_; }
  [[nodiscard]] char at(std::size_t i) const noexcept { return i < text_.size() ? text_[i] : '\0'; }
  /// The first place from `i` on with none of the characters.
  [[nodiscard]] std::size_t skip(std::size_t i, std::string_view characters) const noexcept;
  /// The end of the row of equal characters that begins at `i`.
  [[nodiscard]] std::size_t endOfRun(std::size_t i) const noexcept;
  /// Whether the quote with the escapes before it, which begin at `begin`, stands there twice.
  [[nodiscard]] bool isPair(std::size_t begin, std::size_t quote) const;

  /// The literal at `i`; none when it is empty, or when there only is the quote that closes what is `around`.
  [[nodiscard]] std::optional<Literal> literalAt(std::size_t i, bool json, char around) const;
  /// The literal that an operator at `i` adds to the one in front.
  [[nodiscard]] std::optional<Literal> literalAddedAt(std::size_t i) const;
  /// Where the closing quote, brace or bracket begins, its backslashes included; the end of the text without.
  [[nodiscard]] std::size_t endOfContent(const Literal& literal) const;

 private:
  [[nodiscard]] bool isClosing(std::size_t quote, const Literal& literal) const noexcept;
  [[nodiscard]] bool isDoubled(std::size_t quote, const Literal& literal) const;
  [[nodiscard]] std::size_t endOfNested(std::size_t i) const;

  std::string_view text_;
};

}  // namespace tav
