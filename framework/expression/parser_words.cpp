#include <array>

#include "framework/expression/expression_parser.h"
#include "framework/expression/words.h"

namespace tav {

// CASE.

void ExpressionParser::caseWord() {
  if (openCases_ == 0) return skip("CASE before it");
  while (frame().open != Open::caseOf) closeFrame(true);
  addCasePiece();
  const CasePart part = frame().part;
  const Token::Kind word = token_.kind;
  const bool fits = word == Token::Kind::whenWord   ? part == CasePart::input || part == CasePart::value
                    : word == Token::Kind::thenWord ? part == CasePart::condition
                    : word == Token::Kind::elseWord ? part == CasePart::value
                                                    : part == CasePart::value || part == CasePart::otherwise;
  if (!fits) failCasePart(part);
  if (word == Token::Kind::endWord)
    closeFrame(false);
  else
    startCasePart(word);
  take();
}

void ExpressionParser::startCasePart(Token::Kind word) {
  Frame& top = frame();
  top.part = word == Token::Kind::whenWord   ? CasePart::condition
             : word == Token::Kind::thenWord ? CasePart::value
                                             : CasePart::otherwise;
  if (word == Token::Kind::thenWord && top.clause != kNone) return;
  top.clause = add(Kind::clause, top.part == CasePart::otherwise ? "ELSE" : "WHEN", token_.begin, token_.end);
  append(top.node, top.clause);
}

void ExpressionParser::failCasePart(CasePart part) {
  constexpr std::array<std::string_view, 4> kFollowing{"WHEN", "THEN", "WHEN, ELSE or END", "END"};
  fail(kFollowing[static_cast<std::size_t>(part)]);
}

void ExpressionParser::addCasePiece() {
  NodeId piece = takePiece();
  const Frame& top = frame();
  if (piece == kNone) {
    if (top.part == CasePart::input) return;
    fail(kValue);
    piece = addNothing(Kind::missing);
  }
  append(top.clause == kNone ? top.node : top.clause, piece);
}

// Words that are names elsewhere.

bool ExpressionParser::sqlWord() {
  const Frame& top = frame();
  if (top.open == Open::window && windowWord()) return true;
  if (wantsValue_) {
    // {fn NOW()}, {d '2024-01-31'}
    const bool first = top.open == Open::set && node(top.node).count == 0 && isPieceEmpty();
    if (first && isEscapeWord(token_.text, lexer_.peek())) {
      take();
      return true;
    }
    return false;
  }
  const Op op = sqlOperatorOf(token_.text, false);
  if (op == Op::none) return false;
  pushBinary(op);
  take();
  return true;
}

/// PARTITION BY a, b ORDER BY c DESC ROWS ...: the words part the values as commas do.
bool ExpressionParser::windowWord() {
  if (isWord(token_.text, "PARTITION") || isWord(token_.text, "ORDER")) {
    if (!isPieceEmpty()) addPiece();
    take();
    if (token_.bare && isWord(token_.text, "BY")) take();
    return true;
  }
  const bool rows = isWord(token_.text, "ROWS") || isWord(token_.text, "RANGE");
  if (wantsValue_ || (!rows && !isWord(token_.text, "ASC") && !isWord(token_.text, "DESC"))) return false;
  take();
  while (rows && token_.kind != Token::Kind::closeBracket && token_.kind != Token::Kind::end) take();
  return true;
}

/// NOT behind a value: NOT IN, NOT LIKE, NOT BETWEEN.
void ExpressionParser::negatedOperator() {
  const std::size_t begin = token_.begin;
  take();
  const Op op = token_.bare ? sqlOperatorOf(token_.text, true) : Op::none;
  if (op != Op::none) {
    pushBinary(op);
    return take();
  }
  lexer_.fail(begin, kOperator);
  pushBinary(Op::beside);
  pending_.push_back({Op::logicalNot, true, false, begin});
}

}  // namespace tav
