#include "framework/expression/parser.h"

#include <optional>

#include "framework/expression/expression_parser.h"
#include "framework/expression/words.h"
#include "framework/std/string.h"

namespace tav {

void ExpressionParser::run() {
  token_ = lexer_.next(false);
  while (!done_) step();
}

void ExpressionParser::step() {
  switch (token_.kind) {
    case Token::Kind::end:
      return finish();
    case Token::Kind::comma:
      return comma();
    case Token::Kind::closeBracket:
      return close(false);
    case Token::Kind::closeBrace:
      return close(true);
    case Token::Kind::dot:
      return dot();
    case Token::Kind::operation:
      return operation();
    case Token::Kind::whenWord:
    case Token::Kind::thenWord:
    case Token::Kind::elseWord:
    case Token::Kind::endWord:
      return caseWord();
    case Token::Kind::unknown:
      return skip(expectation());
    default:
      return operand();
  }
}

ExpressionParser::NodeId ExpressionParser::add(Kind kind, std::string_view name, std::size_t begin,
                                               std::size_t end) {
  ExpressionNode made;
  made.kind = kind;
  made.name = name;
  made.begin = begin;
  made.end = end;
  tree_.nodes.push_back(made);
  return static_cast<NodeId>(tree_.nodes.size() - 1);
}

void ExpressionParser::append(NodeId parent, NodeId part) {
  ExpressionNode& into = node(parent);
  if (into.first == kNone)
    into.first = part;
  else
    node(into.last).next = part;
  into.last = part;
  ++into.count;
  into.end = node(part).end;
}

void ExpressionParser::pushValue(NodeId id, After after) {
  values_.push_back(id);
  wantsValue_ = false;
  after_ = after;
}

// Values.

/// Makes room for the value at hand where none is expected.
void ExpressionParser::wantValue() {
  if (wantsValue_) return;
  // In MDX an index stands behind a set or a call without an operator: Axis(0)(1).
  if (token_.kind == Token::Kind::openBracket && after_ == After::indexable && !sql_)
    return pushBinary(Op::index);
  fail(kOperator);
  pushBinary(Op::beside);
}

void ExpressionParser::operand() {
  if (sql_ && token_.bare && sqlWord()) return;
  wantValue();
  if (frames_.size() > kMaxExpressionDepth && passOverOpening()) return;
  switch (token_.kind) {
    case Token::Kind::reference:
      return reference();
    case Token::Kind::call:
      return call();
    case Token::Kind::openBracket:
      return open(sql_ && isPending(Op::over) ? Open::window : Open::tuple, addToken(Kind::tuple));
    case Token::Kind::openBrace:
      return open(Open::set, addToken(Kind::set));
    case Token::Kind::caseWord:
      return open(Open::caseOf, addToken(Kind::caseOf));
    default:
      pushValue(addToken(Kind::constant), After::constant);
      take();
  }
}

void ExpressionParser::reference() {
  // A name with a bracket behind it is no alias.
  const bool alias = isPending(Op::as) && token_.parts == 1 && lexer_.peek() != '(';
  const bool name = alias || isPending(Op::collate) || isPending(Op::over);
  const NodeId id = addToken(name ? Kind::name : Kind::reference);
  node(id).bare = token_.bare;
  pushValue(id, After::reference);
  take();
}

void ExpressionParser::call() {
  const Token token = token_;
  const NodeId id = add(Kind::call, token.text.substr(token.lastPart), token.begin, token.end);
  take();  // the bracket is next, or it would be no call
  open(Open::call, id);
  if (token.parts > 1) append(id, add(Kind::reference, token.qualifier(), token.begin, token.end));
}

/// What stands in brackets that are too deep is read as if it stood in those around them: the brackets
/// themselves would take fifty times the memory of the text.
bool ExpressionParser::passOverOpening() {
  const bool isCall = token_.kind == Token::Kind::call && token_.parts == 1;
  const bool isBrace = token_.kind == Token::Kind::openBrace;
  if (!isCall && !isBrace && token_.kind != Token::Kind::openBracket) return false;
  fail(kDepth);
  if (isCall) take();  // the bracket is next, or it would be no call
  ++(isBrace ? passedBraces_ : passedBrackets_);
  take();
  return true;
}

/// Starts what the token at hand opens.
void ExpressionParser::open(Open what, NodeId id) {
  if (frames_.size() > kMaxExpressionDepth) fail(kDepth);
  openBrackets_ += what == Open::tuple || what == Open::window || what == Open::call ? 1 : 0;
  openBraces_ += what == Open::set ? 1 : 0;
  openCases_ += what == Open::caseOf ? 1 : 0;
  Frame made;
  made.open = what;
  made.node = id;
  made.operators = pending_.size();
  made.values = values_.size();
  frames_.push_back(made);
  wantsValue_ = true;
  take();
}

// Pieces.

/// Completes the piece that ends before the token at hand; none when nothing stands there.
ExpressionParser::NodeId ExpressionParser::takePiece() {
  if (wantsValue_) {
    if (isPieceEmpty()) return kNone;
    fail(kValue);
    values_.push_back(addNothing(Kind::missing));
  }
  reduceTo(0);
  wantsValue_ = true;
  const NodeId piece = values_.back();
  values_.pop_back();
  return piece;
}

void ExpressionParser::addPiece() {
  const Frame top = frame();
  NodeId piece = takePiece();
  if (top.open == Open::call) {
    if (piece == kNone) piece = addNothing(Kind::empty);
    ExpressionNode& argument = node(piece);
    const bool first = sql_ && node(top.node).count == 0 && takesWordFirst(node(top.node).name);
    if (argument.kind == Kind::reference && argument.bare && (first || isFlagWord(argument.name)))
      argument.kind = Kind::name;
  } else if (piece == kNone) {
    fail(kValue);
    piece = addNothing(Kind::missing);
  }
  append(top.node, piece);
}

void ExpressionParser::comma() {
  while (frame().open == Open::caseOf) closeFrame(true);
  if (frame().open == Open::root) return finish();
  addPiece();
  frame().parted = true;
  take();
}

void ExpressionParser::close(bool brace) {
  if (std::size_t& passed = brace ? passedBraces_ : passedBrackets_; passed > 0) {
    --passed;
    return take();
  }
  if ((brace ? openBraces_ : openBrackets_) == 0) return skip(brace ? "\"{\" before it" : "\"(\" before it");
  while (frame().open == Open::caseOf || (frame().open == Open::set) != brace) closeFrame(true);
  closeFrame(false);
  take();
}

/// Makes a value of the innermost frame. `missing`: what should close it does not stand in the text.
void ExpressionParser::closeFrame(bool missing) {
  const Frame top = frame();
  if (top.open == Open::caseOf) {
    if (missing) {
      addCasePiece();
      failCasePart(top.part);
    }
    --openCases_;
  } else {
    if (!isPieceEmpty() || top.parted) addPiece();
    if (missing) fail(top.open == Open::set ? "\"}\"" : "\")\"");
    --(top.open == Open::set ? openBraces_ : openBrackets_);
  }
  node(top.node).end = missing ? lastEnd_ : token_.end;
  frames_.pop_back();
  const bool indexable = top.open == Open::call || top.open == Open::set || isPending(Op::index);
  pushValue(top.node, indexable ? After::indexable : After::closed);
}

void ExpressionParser::finish() {
  while (frames_.size() > 1) closeFrame(true);
  tree_.root = takePiece();
  tree_.fault = lexer_.fault();
  // The blanks behind the comma were read, but what follows it is not part of the expression.
  if (token_.kind == Token::Kind::comma && tree_.fault.offset > token_.begin) tree_.fault = {};
  done_ = true;
}

namespace {

/// What an expression in single quotes encloses, and what is wrong behind it.
struct QuotedExpression {
  std::string_view text;
  ExpressionFault fault;
};

std::optional<QuotedExpression> quotedExpression(std::string_view text) {
  PieceBuffer pieces;
  Lexer lexer(text, ExpressionLanguage::mdx, pieces);
  if (lexer.peek() != '\'') return std::nullopt;
  const Token string = lexer.next(false);
  const Token following = lexer.next(false);
  const bool comma = following.kind == Token::Kind::comma;
  if (string.kind != Token::Kind::string || (!comma && following.kind != Token::Kind::end))
    return std::nullopt;
  return QuotedExpression{string.text.substr(1, string.text.size() - 2),
                          comma ? ExpressionFault() : lexer.fault()};
}

}  // namespace

ExpressionTree parseExpression(std::string_view text, ExpressionLanguage language) {
  ExpressionTree tree;
  tree.source = text;
  const auto quoted = language == ExpressionLanguage::mdx ? quotedExpression(text) : std::nullopt;
  if (!quoted) {
    ExpressionParser(tree, language).run();
    return tree;
  }
  tree.unquoted = std::make_unique<std::string>(TAVString(quoted->text).replaceAll("''", "'").str());
  tree.source = *tree.unquoted;
  ExpressionParser(tree, language).run();
  if (!tree.fault) {
    tree.fault = quoted->fault;
    return tree;
  }
  // Every doubled quote before the fault is a character longer in the text.
  std::size_t place = 0;
  for (std::size_t i = 0; i < tree.fault.offset; ++i)
    place += quoted->text.compare(place, 2, "''") == 0 ? 2 : 1;
  tree.fault.offset = static_cast<std::size_t>(quoted->text.data() - text.data()) + place;
  return tree;
}

}  // namespace tav
