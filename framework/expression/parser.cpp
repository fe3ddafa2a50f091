#include "framework/expression/parser.h"

#include <array>
#include <optional>

#include "framework/expression/words.h"
#include "framework/std/string.h"

namespace tav {

namespace {

using Kind = ExpressionNode::Kind;
using NodeId = std::uint32_t;
constexpr NodeId kNone = ExpressionNode::kNone;

constexpr std::string_view kValue = "a value";
constexpr std::string_view kOperator = "an operator";
constexpr std::string_view kName = "a name";

Op prefixOf(Op op) noexcept {
  switch (op) {
    case Op::minus:
      return Op::negative;
    case Op::plus:
      return Op::positive;
    case Op::logicalNot:
    case Op::distinct:
    case Op::existing:
    case Op::complement:
      return op;
    default:
      return Op::none;
  }
}

bool isPrefixOnly(Op op) noexcept {
  return op == Op::logicalNot || op == Op::distinct || op == Op::existing || op == Op::complement;
}

bool isBetween(Op op) noexcept {
  return op == Op::between || op == Op::notBetween;
}

// What should follow each part of a CASE.
constexpr std::array<std::string_view, 4> kCaseWords{"WHEN", "THEN", "WHEN, ELSE or END", "END"};

/// Operator precedence with stacks of its own instead of calls: what is nested costs heap alone, and what
/// breaks the grammar leaves nothing to unwind.
class Parser {
 public:
  Parser(ExpressionTree& tree, ExpressionLanguage language)
      : tree_(tree), sql_(language == ExpressionLanguage::sql), lexer_(tree.source, language, tree.pieces) {}

  void run();

 private:
  enum class Open : std::uint8_t { root, tuple, window, call, set, caseOf };
  enum class CasePart : std::uint8_t { input, condition, value, otherwise };
  /// What stands before the place when a value does: it decides what a dot or a bracket means there.
  enum class After : std::uint8_t { constant, reference, closed, indexable };

  struct Frame {
    Open open = Open::root;
    CasePart part = CasePart::input;
    NodeId node = kNone;
    NodeId clause = kNone;      // of a CASE, the one that is being read
    bool parted = false;        // a comma was read
    std::size_t operators = 0;  // how many of the pending ones stand outside
    std::size_t values = 0;
  };
  struct Pending {
    Op op = Op::none;
    bool prefix = false;
    bool hasAnd = false;  // a BETWEEN whose AND was read
    std::size_t begin = 0;
  };

  void step();
  void take() {
    lastEnd_ = token_.end;
    token_ = lexer_.next(openCases_ > 0);
  }
  void fail(std::string_view expected) { lexer_.fail(token_.begin, expected); }
  void skip(std::string_view expected) {
    fail(expected);
    take();
  }
  [[nodiscard]] std::string_view expectation() const { return wantsValue_ ? kValue : kOperator; }
  Frame& frame() { return frames_.back(); }
  ExpressionNode& node(NodeId id) { return tree_.nodes[id]; }

  NodeId add(Kind kind, std::string_view name, std::size_t begin, std::size_t end);
  NodeId addToken(Kind kind) { return add(kind, token_.text, token_.begin, token_.end); }
  NodeId addNothing(Kind kind) { return add(kind, {}, token_.begin, token_.begin); }
  void append(NodeId parent, NodeId part);
  void pushValue(NodeId id, After after);

  void operand();
  void reference();
  void call();
  void open(Open what, NodeId id);
  void wantValue();
  bool sqlWord();
  bool windowWord();

  void operation();
  void negatedOperator();
  [[nodiscard]] bool isLoneStar() const;
  [[nodiscard]] bool isPieceEmpty() const;
  bool completesBetween();
  [[nodiscard]] bool isPending(Op op) const;
  void pushBinary(Op op);
  void reduceTo(std::uint8_t binding);
  void reduce();

  void dot();
  void method();
  void comma();
  void close(bool brace);
  void closeFrame(bool missing);
  NodeId takePiece();
  void addPiece();
  void caseWord();
  void addCasePiece();
  void startCasePart(Token::Kind word);
  void finish();

  ExpressionTree& tree_;
  bool sql_;
  Lexer lexer_;
  Token token_;
  std::size_t lastEnd_ = 0;
  std::vector<Frame> frames_{Frame{}};
  std::vector<Pending> pending_;
  std::vector<NodeId> values_;
  bool wantsValue_ = true;
  bool done_ = false;
  After after_ = After::constant;
  std::size_t openBrackets_ = 0;  // of tuples and calls
  std::size_t openBraces_ = 0;
  std::size_t openCases_ = 0;
};

void Parser::run() {
  token_ = lexer_.next(false);
  while (!done_) step();
}

void Parser::step() {
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

NodeId Parser::add(Kind kind, std::string_view name, std::size_t begin, std::size_t end) {
  ExpressionNode made;
  made.kind = kind;
  made.name = name;
  made.begin = begin;
  made.end = end;
  tree_.nodes.push_back(made);
  return static_cast<NodeId>(tree_.nodes.size() - 1);
}

void Parser::append(NodeId parent, NodeId part) {
  ExpressionNode& into = node(parent);
  if (into.first == kNone)
    into.first = part;
  else
    node(into.last).next = part;
  into.last = part;
  ++into.count;
  into.end = node(part).end;
}

void Parser::pushValue(NodeId id, After after) {
  values_.push_back(id);
  wantsValue_ = false;
  after_ = after;
}

// Values.

/// Makes room for the value at hand where none is expected.
void Parser::wantValue() {
  if (wantsValue_) return;
  // In MDX an index stands behind a set or a call without an operator: Axis(0)(1).
  if (token_.kind == Token::Kind::openBracket && after_ == After::indexable && !sql_)
    return pushBinary(Op::index);
  fail(kOperator);
  pushBinary(Op::beside);
}

void Parser::operand() {
  if (sql_ && token_.bare && sqlWord()) return;
  wantValue();
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

void Parser::reference() {
  // A name with a bracket behind it is no alias.
  const bool alias = isPending(Op::as) && token_.parts == 1 && lexer_.peek() != '(';
  const bool name = alias || isPending(Op::collate) || isPending(Op::over);
  const NodeId id = addToken(name ? Kind::name : Kind::reference);
  node(id).bare = token_.bare;
  pushValue(id, After::reference);
  take();
}

void Parser::call() {
  const Token token = token_;
  const NodeId id = add(Kind::call, token.text.substr(token.lastPart), token.begin, token.end);
  take();  // the bracket is next, or it would be no call
  open(Open::call, id);
  if (token.parts > 1)
    append(id, add(Kind::reference, token.text.substr(0, token.lastPart - 1), token.begin, token.end));
}

/// Starts what the token at hand opens.
void Parser::open(Open what, NodeId id) {
  if (frames_.size() > kMaxExpressionDepth) fail("at most 1,000 levels");
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

// Words that are names elsewhere.

bool Parser::sqlWord() {
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
bool Parser::windowWord() {
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
void Parser::negatedOperator() {
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

// Operators.

bool Parser::isPending(Op op) const {
  return wantsValue_ && pending_.size() > frames_.back().operators && pending_.back().op == op;
}

bool Parser::isPieceEmpty() const {
  return values_.size() == frames_.back().values && pending_.size() == frames_.back().operators;
}

/// COUNT(*), COUNT(DISTINCT *)
bool Parser::isLoneStar() const {
  const Frame& top = frames_.back();
  return token_.op == Op::times && top.open == Open::call && values_.size() == top.values &&
         (pending_.size() == top.operators || isPending(Op::distinct)) &&
         (lexer_.peek() == ')' || lexer_.peek() == ',');
}

void Parser::operation() {
  const Op op = token_.op;
  const Op prefix = prefixOf(op);
  if (wantsValue_ && isLoneStar()) {
    pushValue(addToken(Kind::star), After::constant);
  } else if (wantsValue_ && prefix != Op::none) {
    pending_.push_back({prefix, true, false, token_.begin});
  } else if (!wantsValue_ && isPrefixOnly(op)) {
    if (sql_ && op == Op::logicalNot) return negatedOperator();
    wantValue();
    pending_.push_back({prefix, true, false, token_.begin});
  } else {
    if (wantsValue_) {
      fail(kValue);
      pushValue(addNothing(Kind::missing), After::constant);
    }
    if (op != Op::logicalAnd || !completesBetween()) pushBinary(op);
  }
  take();
}

/// Whether the AND at hand belongs to a BETWEEN.
bool Parser::completesBetween() {
  reduceTo(operatorOf(Op::between).binding + 1);
  if (pending_.size() == frame().operators) return false;
  Pending& top = pending_.back();
  if (!isBetween(top.op) || top.hasAnd) return false;
  top.hasAnd = true;
  const Pending rest = top;
  reduce();
  pending_.push_back(rest);  // what follows the AND joins the same node
  wantsValue_ = true;
  return true;
}

void Parser::pushBinary(Op op) {
  reduceTo(operatorOf(op).binding);
  pending_.push_back({op, false, false, token_.begin});
  wantsValue_ = true;
}

/// Builds the nodes of the pending operators that bind at least so tight.
void Parser::reduceTo(std::uint8_t binding) {
  while (pending_.size() > frame().operators && operatorOf(pending_.back().op).binding >= binding) reduce();
}

void Parser::reduce() {
  const Pending made = pending_.back();
  pending_.pop_back();
  const std::string_view name = operatorOf(made.op).text;
  const NodeId right = values_.back();
  if (made.prefix) {
    const NodeId id = add(Kind::prefix, name, made.begin, made.begin);
    append(id, right);
    values_.back() = id;
    return;
  }
  if (isBetween(made.op) && !made.hasAnd) fail("AND");
  values_.pop_back();
  NodeId& left = values_.back();
  // A chain of equal operators grows one node.
  if (node(left).kind != Kind::operation || node(left).op != made.op) {
    const NodeId id = add(Kind::operation, name, node(left).begin, node(left).begin);
    node(id).op = made.op;
    append(id, left);
    left = id;
  }
  append(left, right);
}

// Dots that join no names.

void Parser::dot() {
  const After after = after_;
  if (wantsValue_ || after == After::constant) return skip(expectation());
  take();
  const bool named = token_.bare || token_.kind == Token::Kind::reference || token_.kind == Token::Kind::call;
  if (after == After::reference || !named) return fail(kName);
  // What follows a bracket: a property of its value, or a method that is called on it.
  pushBinary(Op::member);
  if (token_.kind == Token::Kind::call) return method();
  pushValue(addToken(Kind::name), After::closed);
  take();
}

void Parser::method() {
  if (token_.parts > 1) {
    const std::string_view before = token_.text.substr(0, token_.lastPart - 1);
    pushValue(add(Kind::name, before, token_.begin, token_.begin + before.size()), After::closed);
    pushBinary(Op::member);
    token_.text = token_.text.substr(token_.lastPart);
    token_.lastPart = 0;
    token_.parts = 1;
  }
  call();
}

// Pieces: what stands between brackets and commas.

/// Completes the piece that ends before the token at hand; none when nothing stands there.
NodeId Parser::takePiece() {
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

void Parser::addPiece() {
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

void Parser::comma() {
  while (frame().open == Open::caseOf) closeFrame(true);
  if (frame().open == Open::root) return finish();
  addPiece();
  frame().parted = true;
  take();
}

void Parser::close(bool brace) {
  if ((brace ? openBraces_ : openBrackets_) == 0) return skip(brace ? "\"{\" before it" : "\"(\" before it");
  while (frame().open == Open::caseOf || (frame().open == Open::set) != brace) closeFrame(true);
  closeFrame(false);
  take();
}

/// Makes a value of the innermost frame. `missing`: what should close it does not stand in the text.
void Parser::closeFrame(bool missing) {
  const Frame top = frame();
  if (top.open == Open::caseOf) {
    if (missing) addCasePiece();
    if (missing) fail(kCaseWords[static_cast<std::size_t>(top.part)]);
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

// CASE.

void Parser::caseWord() {
  if (openCases_ == 0) return skip("CASE before it");
  while (frame().open != Open::caseOf) closeFrame(true);
  addCasePiece();
  const CasePart part = frame().part;
  const Token::Kind word = token_.kind;
  const bool fits = word == Token::Kind::whenWord   ? part == CasePart::input || part == CasePart::value
                    : word == Token::Kind::thenWord ? part == CasePart::condition
                    : word == Token::Kind::elseWord ? part == CasePart::value
                                                    : part == CasePart::value || part == CasePart::otherwise;
  if (!fits) fail(kCaseWords[static_cast<std::size_t>(part)]);
  if (word == Token::Kind::endWord)
    closeFrame(false);
  else
    startCasePart(word);
  take();
}

void Parser::startCasePart(Token::Kind word) {
  Frame& top = frame();
  top.part = word == Token::Kind::whenWord   ? CasePart::condition
             : word == Token::Kind::thenWord ? CasePart::value
                                             : CasePart::otherwise;
  if (word == Token::Kind::thenWord && top.clause != kNone) return;
  top.clause = add(Kind::clause, top.part == CasePart::otherwise ? "ELSE" : "WHEN", token_.begin, token_.end);
  append(top.node, top.clause);
}

void Parser::addCasePiece() {
  NodeId piece = takePiece();
  const Frame& top = frame();
  if (piece == kNone) {
    if (top.part == CasePart::input) return;
    fail(kValue);
    piece = addNothing(Kind::missing);
  }
  append(top.clause == kNone ? top.node : top.clause, piece);
}

void Parser::finish() {
  while (frames_.size() > 1) closeFrame(true);
  tree_.root = takePiece();
  tree_.fault = lexer_.fault();
  // The blanks behind the comma were read, but what follows it is not part of the expression.
  if (token_.kind == Token::Kind::comma && tree_.fault.offset > token_.begin) tree_.fault = {};
  done_ = true;
}

/// Whether a token ends the expression.
bool endsExpression(const Token& token) noexcept {
  return token.kind == Token::Kind::end || token.kind == Token::Kind::comma;
}

/// `text` without its quotes, when it is one single-quoted string.
std::optional<std::string_view> quotedExpression(std::string_view text) {
  PieceBuffer pieces;
  Lexer lexer(text, ExpressionLanguage::mdx, pieces);
  if (lexer.peek() != '\'') return std::nullopt;
  const Token string = lexer.next(false);
  if (string.kind != Token::Kind::string || !endsExpression(lexer.next(false))) return std::nullopt;
  return string.text.substr(1, string.text.size() - 2);
}

}  // namespace

ExpressionTree parseExpression(std::string_view text, ExpressionLanguage language) {
  ExpressionTree tree;
  tree.source = text;
  const auto quoted = language == ExpressionLanguage::mdx ? quotedExpression(text) : std::nullopt;
  if (!quoted) {
    Parser(tree, language).run();
    return tree;
  }
  tree.unquoted = std::make_unique<std::string>(TAVString(*quoted).replaceAll("''", "'").str());
  tree.source = *tree.unquoted;
  Parser(tree, language).run();
  if (tree.fault) {
    // Every doubled quote before the fault is a character longer in the text.
    std::size_t place = 0;
    for (std::size_t i = 0; i < tree.fault.offset; ++i) place += quoted->compare(place, 2, "''") == 0 ? 2 : 1;
    tree.fault.offset = static_cast<std::size_t>(quoted->data() - text.data()) + place;
  }
  return tree;
}

}  // namespace tav
