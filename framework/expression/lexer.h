#pragma once

// Expressions as tokens. A whole dotted reference is one token, so that the parser never sees a dot between
// names.

#include <cstdint>
#include <memory>
#include <string_view>

#include "framework/api.h"
#include "framework/expression/language.h"
#include "framework/expression/operators.h"
#include "framework/std/string.h"

namespace tav {

/// Where an expression breaks its grammar, and what it should hold there.
struct ExpressionFault {
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
  std::size_t offset = kNowhere;  ///< in bytes
  std::string_view expected;

  explicit operator bool() const noexcept { return offset != kNowhere; }
};

struct Token {
  enum class Kind : std::uint8_t {
    end,  ///< of the text, or a semicolon
    reference,
    call,      ///< a reference whose last part is a bare name before an open bracket
    constant,  ///< NULL, TRUE, FALSE
    number,
    string,
    operation,
    openBracket,
    closeBracket,
    openBrace,
    closeBrace,
    comma,
    dot,  ///< not one that joins names
    caseWord,
    whenWord,
    thenWord,
    elseWord,
    endWord,
    unknown,
  };

  Kind kind = Kind::end;
  Op op = Op::none;
  bool bare = false;           ///< a reference of one part without brackets or quotes
  std::uint32_t parts = 0;     ///< of a reference
  std::uint32_t lastPart = 0;  ///< where the last part of a reference begins in its text
  std::size_t begin = 0;       ///< in bytes
  std::size_t end = 0;
  std::string_view text;  ///< as written; of a reference its parts joined by dots alone

  /// The parts of a reference in front of its last one, empty ones at their end left out.
  [[nodiscard]] std::string_view qualifier() const noexcept {
    std::string_view front = text.substr(0, lastPart);
    while (front.ends_with('.')) front.remove_suffix(1);
    return front;
  }
};

/// Texts made from pieces of a source. Together they are never longer than the source, so one block that is
/// made with the first of them holds all.
class PieceBuffer {
 public:
  void startPiece(std::size_t capacity) {
    if (!block_) block_ = std::make_unique_for_overwrite<char[]>(capacity);
    start_ = used_;
  }
  void append(std::string_view text) noexcept {
    text.copy(block_.get() + used_, text.size());
    used_ += text.size();
  }
  [[nodiscard]] std::string_view piece() const noexcept { return {block_.get() + start_, used_ - start_}; }

 private:
  std::unique_ptr<char[]> block_;
  std::size_t start_ = 0;
  std::size_t used_ = 0;
};

class TAV_API Lexer {
 public:
  /// The source, and the texts of references that are laid out otherwise in it, must outlive the tokens.
  Lexer(std::string_view source, ExpressionLanguage language, PieceBuffer& pieces);

  /// The next token. `insideCase`: END closes a CASE, even when a dot follows.
  Token next(bool insideCase);
  /// The character that the next token begins with, 0 at the end.
  [[nodiscard]] char peek() const noexcept { return at(place_); }

  /// Keeps the fault that stands first in the text.
  void fail(std::size_t offset, std::string_view expected) noexcept {
    if (offset < fault_.offset) fault_ = {offset, expected};
  }
  [[nodiscard]] const ExpressionFault& fault() const noexcept { return fault_; }

 private:
  // The end of a string, a quoted name or a comment that is left open.
  static constexpr std::size_t kNeverClosed = static_cast<std::size_t>(-1);

  [[nodiscard]] char at(std::size_t place) const noexcept {
    return place < source_.size() ? source_[place] : '\0';
  }
  [[nodiscard]] std::size_t skipBlanks(std::size_t place) noexcept;
  [[nodiscard]] std::size_t skipLine(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t skipBlockComment(std::size_t place) noexcept;
  [[nodiscard]] std::size_t skipNestedComment(std::size_t place) noexcept;
  [[nodiscard]] std::size_t endOfWord(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfNumber(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfQuoted(std::size_t place, char close) const noexcept;
  [[nodiscard]] std::size_t endOfPart(std::size_t place) noexcept;
  [[nodiscard]] std::size_t endOfVariable(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfEscaped(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfDelimited(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfDollarQuoted(std::size_t place) const noexcept;
  [[nodiscard]] bool startsSqlString(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfSqlString(std::size_t place) const noexcept;
  [[nodiscard]] bool startsWord(std::size_t place) const noexcept;
  [[nodiscard]] bool startsPart(std::size_t place) const noexcept;
  [[nodiscard]] bool startsKey(std::size_t place) const noexcept;

  Token finish(Token::Kind kind, std::size_t end) noexcept;
  Token operation(Op op, std::size_t length) noexcept;
  std::size_t findNextPart(std::size_t from, std::size_t to, bool& sameKey) noexcept;
  Token reference(bool insideCase);
  Token closeReference(Token token, bool lastIsWord);
  bool takeLibraryFunction(Token& token) noexcept;
  Token quoted(char quote);
  Token sqlString();
  Token symbol();
  Token sqlSymbol();

  std::string_view source_;
  ExpressionLanguage language_;
  PieceBuffer& pieces_;
  ExpressionFault fault_;
  bool flatComments_ = false;  // comments were seen to end at the first "*/"
  std::size_t place_;          // where the next token begins
};

/// A place in a text as "line 2, column 7", columns in characters; `offset` in bytes.
TAV_API TAVString placeInText(std::string_view text, std::size_t offset);

}  // namespace tav
