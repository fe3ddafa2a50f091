#pragma once

// The tokens of statements with a look at those that follow, and what each is to the table of transitions.

#include <deque>
#include <memory>

#include "framework/expression/lexer.h"
#include "framework/expression/query_words.h"

namespace tav {

class QueryTokens {
 public:
  /// The text, and the buffer of its names, must outlive the tokens.
  QueryTokens(std::string_view text, PieceBuffer& pieces);

  /// The token at hand, or the one `count` behind it. At the end of the text there is no end of end tokens.
  [[nodiscard]] const Token& at(std::size_t count = 0);
  void take();
  /// Where the token that was taken last ends.
  [[nodiscard]] std::size_t lastEnd() const noexcept { return lastEnd_; }

  /// What the token at hand is. Words that are reserved in some dialects only are names unless what follows
  /// shows that they are meant.
  [[nodiscard]] QuerySign sign() { return signOf(0); }
  [[nodiscard]] bool isWord(std::string_view upper, std::size_t count = 0);
  [[nodiscard]] bool isName(std::size_t count = 0);
  /// Whether a SELECT, WITH or VALUES begins here.
  [[nodiscard]] bool startsQuery(std::size_t count = 0);
  /// Whether a number of rows begins here.
  [[nodiscard]] bool startsCount(std::size_t count);
  [[nodiscard]] bool isOpenBracket(std::size_t count = 0) {
    return at(count).kind == Token::Kind::openBracket;
  }

  /// What broke the tokens themselves, such as a quote that is left open.
  [[nodiscard]] const ExpressionFault& fault() const noexcept { return fault_; }

 private:
  static constexpr std::size_t kOuterJoinMark = 3;  // tokens of (+); a name is not given out before them

  void read();
  Token readRaw();
  void joinOuterJoinMark();
  [[nodiscard]] bool isIndex(const Token& token) const noexcept;
  [[nodiscard]] QuerySign signOf(std::size_t count);
  [[nodiscard]] QuerySign signOfName(std::size_t count);
  [[nodiscard]] QuerySign signOfOperation(std::size_t count);
  [[nodiscard]] QuerySign signInContext(QuerySign word, std::size_t count);
  [[nodiscard]] bool isMeant(QuerySign word, std::size_t count);
  [[nodiscard]] bool isJoinMeant(std::size_t count);
  [[nodiscard]] bool isOperationMeant(std::size_t count);

  /// A token as it stands in the whole text.
  struct Read {
    Token token;
    bool isIndex = false;
  };

  std::string_view text_;
  PieceBuffer& pieces_;
  std::size_t base_ = 0;  // where the lexer's text begins in the whole
  std::unique_ptr<Lexer> lexer_;
  std::deque<Read> ahead_;
  ExpressionFault fault_;
  std::size_t lastEnd_ = 0;
  std::size_t readEnd_ = 0;                      // of the token that was read last, which may lie ahead
  Token::Kind readKind_ = Token::Kind::unknown;  // its kind
};

}  // namespace tav
