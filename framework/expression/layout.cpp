#include "framework/expression/layout.h"

#include <algorithm>
#include <array>

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";
/// Beside these, blanks never mean anything, whatever stands at the other side.
constexpr std::string_view kAloof = ",;(){}";
constexpr std::string_view kOperators = "+-*/=<>^";

/// What a language has quotes and comments of.
struct LayoutRules {
  std::string_view language;
  std::string_view quotes;        ///< those that are doubled inside
  bool brackets;                  ///< a name stands in [], with a closing one doubled
  bool nestedBrackets;            ///< [] may hold one another and anything else
  std::string_view lineComments;  ///< the characters that doubled begin one
  bool nestedComments;
  bool hints;  ///< comments that begin with a sign mean something: /*+ INDEX(a) */
};

constexpr std::array<LayoutRules, 4> kRules{{
    {"mdx", "\"'", true, false, "/-", false, false},
    {"dax", "\"'", true, false, "/-", false, false},
    {"sql", "\"'`", true, false, "-", true, true},
    {"m", "\"", false, true, "/", false, false},
}};

bool isIn(char c, std::string_view characters) noexcept {
  return characters.find(c) != characters.npos;
}

bool isWordCharacter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class LayoutScanner {
 public:
  LayoutScanner(std::string_view text, const LayoutRules& rules)
      : text_(text), rules_(rules), nested_(rules.nestedComments) {
    kept_.reserve(text.size());
  }

  std::string scan() {
    while (place_ < text_.size()) {
      const std::size_t comment = endOfComment();
      if (depth_ > 0 ? comment != place_ : (comment != place_ || isIn(text_[place_], kBlanks))) {
        gap_ = true;
        place_ = std::max(comment, place_ + 1);
        continue;
      }
      const std::size_t end = endOfPiece();
      keep(text_.substr(place_, end - place_));
      place_ = end;
    }
    return std::move(kept_);
  }

 private:
  [[nodiscard]] char at(std::size_t place) const noexcept {
    return place < text_.size() ? text_[place] : '\0';
  }

  /// The end of a comment that begins here; this place when none does.
  [[nodiscard]] std::size_t endOfComment() noexcept {
    const char c = at(place_);
    if (isIn(c, rules_.lineComments) && at(place_ + 1) == c)
      return std::min(text_.find_first_of("\r\n", place_), text_.size());
    if (c != '/' || at(place_ + 1) != '*') return place_;
    if (rules_.hints && isIn(at(place_ + 2), "+!")) return place_;
    return endOfBlock();
  }

  /// Comments of SQL may hold one another; where they then never end, they do not.
  std::size_t endOfBlock() noexcept {
    std::size_t depth = 0;
    for (std::size_t i = place_; nested_ && i + 1 < text_.size(); ++i) {
      const std::string_view sign = text_.substr(i, 2);
      if (sign != "/*" && sign != "*/") continue;
      ++i;
      depth += sign == "/*" ? 1 : -1;
      if (depth == 0) return i + 1;
    }
    nested_ = false;
    const std::size_t end = text_.find("*/", place_ + 2);
    return end == text_.npos ? text_.size() : end + 2;
  }

  /// The end of a string, of a name in quotes or brackets, or of the character here.
  std::size_t endOfPiece() noexcept {
    const char c = text_[place_];
    if (isIn(c, rules_.quotes)) return endOfQuoted(c);
    if (c == '[' && rules_.brackets) return endOfQuoted(']');
    if (c == '/' && at(place_ + 1) == '*') return endOfBlock();  // a hint
    if (rules_.nestedBrackets && c == '[') ++depth_;
    if (rules_.nestedBrackets && c == ']' && depth_ > 0) --depth_;
    return place_ + 1;
  }

  [[nodiscard]] std::size_t endOfQuoted(char close) const noexcept {
    for (std::size_t i = text_.find(close, place_ + 1); i != text_.npos; i = text_.find(close, i + 2))
      if (at(i + 1) != close) return i + 1;
    return text_.size();
  }

  void keep(std::string_view piece) {
    if (gap_ && !kept_.empty() && meansBlank(kept_.back(), piece.front())) kept_ += ' ';
    gap_ = false;
    kept_ += piece;
  }

  /// Whether it may matter that something stands between two characters.
  static bool meansBlank(char left, char right) noexcept {
    if (isIn(left, kAloof) || isIn(right, kAloof)) return false;
    const bool leftSign = isIn(left, kOperators);
    const bool rightSign = isIn(right, kOperators);
    const auto isOperand = [](char c) { return isWordCharacter(c) || isIn(c, "\"'[]"); };
    return !(leftSign && isOperand(right)) && !(rightSign && isOperand(left));
  }

  std::string_view text_;
  const LayoutRules& rules_;
  std::string kept_;
  std::size_t place_ = 0;
  std::size_t depth_ = 0;  // of brackets in which blanks stay
  bool nested_;            // whether comments may still hold one another
  bool gap_ = false;       // whether blanks or comments stand in front
};

}  // namespace

std::string withoutLayout(std::string_view text, std::string_view language) {
  const auto rules = std::find_if(kRules.begin(), kRules.end(),
                                  [&](const LayoutRules& row) { return row.language == language; });
  if (rules == kRules.end()) return std::string(text);
  return LayoutScanner(text, *rules).scan();
}

}  // namespace tav
