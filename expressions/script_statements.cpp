#include "expressions/script_statements.h"

#include <algorithm>
#include <array>
#include <utility>

#include "framework/expression/words.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

constexpr std::array<std::string_view, kStatementKindCount> kStatementWords{
    "CALCULATE",  "CREATE MEMBER", "CREATE SET",     "CREATE CELL CALCULATION",
    "CREATE KPI", "CREATE ACTION", "CREATE SUBCUBE", "CREATE MEASURE",
    "ALTER",      "UPDATE",        "DROP",           "SCOPE",
    "END SCOPE",  "FREEZE",        "assignment",     "statement"};

// What a script can assign to cells beside their value. Other calls before "=" are ranges: Leaves(...).
constexpr std::array<std::string_view, 15> kCellProperties{
    "ACTION_TYPE",        "BACK_COLOR",  "CAPTION",    "CELL_ORDINAL", "DISPLAY_FOLDER", "FONT_FLAGS",
    "FONT_NAME",          "FONT_SIZE",   "FORE_COLOR", "FORMAT",       "FORMAT_STRING",  "LANGUAGE",
    "NON_EMPTY_BEHAVIOR", "SOLVE_ORDER", "VISIBLE"};

/// Cuts a script at its semicolons, those in strings, names in brackets and comments left out. What is opened
/// and never closed ends with its statement, and is searched for once only.
class StatementCutter {
 public:
  explicit StatementCutter(std::string_view script) : script_(script) {}

  /// The next statement without its semicolon; false at the end.
  bool next(std::string_view& statement) {
    if (place_ >= script_.size()) return false;
    const std::size_t begin = place_;
    while (place_ < script_.size() && script_[place_] != ';') step();
    statement = script_.substr(begin, place_ - begin);
    ++place_;
    return true;
  }

 private:
  enum Opener : std::size_t { kSingleQuote, kDoubleQuote, kBracket, kComment, kOpenerCount };

  void step() {
    place_ = std::min(script_.find_first_of(";'\"[/-", place_), script_.size());
    if (place_ == script_.size()) return;
    const char c = script_[place_];
    if (c == '\'') return skip(kSingleQuote, "'", 1);
    if (c == '"') return skip(kDoubleQuote, "\"", 1);
    if (c == '[') return skip(kBracket, "]", 1);
    const char following = place_ + 1 < script_.size() ? script_[place_ + 1] : '\0';
    if (c == '/' && following == '*') return skip(kComment, "*/", 2);
    if ((c == '/' || c == '-') && following == c)
      place_ = std::min(script_.find_first_of("\r\n", place_), script_.size());
    else if (c != ';')
      ++place_;
  }

  void skip(Opener opener, std::string_view closing, std::size_t openingLength) {
    std::size_t end = neverClosed_[opener] ? kNone : script_.find(closing, place_ + openingLength);
    while (end != kNone && opener != kComment && script_.substr(end + 1, 1) == closing)
      end = script_.find(closing, end + 2);
    if (end == kNone) {
      neverClosed_[opener] = true;
      place_ = std::min(script_.find(';', place_), script_.size());
      return;
    }
    place_ = end + closing.size();
  }

  std::string_view script_;
  std::size_t place_ = 0;
  std::array<bool, kOpenerCount> neverClosed_{};
};

/// Reads one statement, token by token.
class StatementReader {
 public:
  StatementReader(std::string_view text, std::size_t place, std::vector<ScriptStatement>& statements)
      : text_(text), place_(place), statements_(statements), lexer_(text, ExpressionLanguage::mdx, pieces_) {
    take();
    begin_ = isEnd() ? 0 : token_.begin;
  }

  /// Adds what the text says to the statements; nothing for an empty one.
  void run();

 private:
  enum Stop : unsigned { kComma = 1, kAs = 2, kEqual = 4, kThen = 8, kBranchEnd = 16, kFor = 32 };

  void take() {
    lastEnd_ = token_.end;
    token_ = lexer_.next(cases_ > 0);
  }
  [[nodiscard]] bool isAt(std::string_view word) const { return token_.bare && isWord(token_.text, word); }
  bool takeWord(std::string_view word) {
    if (!isAt(word)) return false;
    take();
    return true;
  }
  [[nodiscard]] bool isEnd() const { return token_.kind == Token::Kind::end; }
  void fail(std::string_view expected) {
    if (!statement_.fault) statement_.fault = {place_ + token_.begin, expected};
  }

  [[nodiscard]] bool stopsAt(unsigned stops) const;
  void count();
  std::string_view piece(unsigned stops);
  std::string_view neededPiece(unsigned stops, std::string_view expected);
  bool takeOperator(Op op, std::string_view expected);

  void readStatement();
  void readCreate();
  void readMember();
  void readCells();
  void readOffered();
  void readDefinition();
  void readProperties();
  void readChange(StatementKind kind);
  void readScope();
  void readAssignment(unsigned stops);
  void readIf();
  void add();

  std::string_view text_;
  std::size_t place_;      // of the text in the script
  std::size_t begin_ = 0;  // behind blanks and comments
  std::vector<ScriptStatement>& statements_;
  PieceBuffer pieces_;
  Lexer lexer_;
  Token token_;
  std::size_t lastEnd_ = 0;
  std::size_t brackets_ = 0;
  std::size_t cases_ = 0;
  ScriptStatement statement_;
};

bool StatementReader::stopsAt(unsigned stops) const {
  if (brackets_ > 0 || cases_ > 0) return false;
  switch (token_.kind) {
    case Token::Kind::comma:
      return (stops & kComma) != 0;
    case Token::Kind::operation:
      return (token_.op == Op::as && (stops & kAs) != 0) || (token_.op == Op::equal && (stops & kEqual) != 0);
    case Token::Kind::thenWord:
      return (stops & kThen) != 0;
    case Token::Kind::endWord:
    case Token::Kind::elseWord:
      return (stops & kBranchEnd) != 0;
    default:
      return ((stops & kFor) != 0 && isAt("FOR")) || ((stops & kBranchEnd) != 0 && isAt("ELSEIF"));
  }
}

void StatementReader::count() {
  switch (token_.kind) {
    case Token::Kind::openBracket:
    case Token::Kind::openBrace:
      ++brackets_;
      break;
    case Token::Kind::closeBracket:
    case Token::Kind::closeBrace:
      brackets_ -= brackets_ > 0 ? 1 : 0;
      break;
    case Token::Kind::caseWord:
      ++cases_;
      break;
    case Token::Kind::endWord:
      cases_ -= cases_ > 0 ? 1 : 0;
      break;
    default:
      break;
  }
}

/// What stands up to one of the stops outside all brackets, or the end.
std::string_view StatementReader::piece(unsigned stops) {
  const std::size_t begin = token_.begin;
  bool empty = true;
  while (!isEnd() && !stopsAt(stops)) {
    count();
    take();
    empty = false;
  }
  return empty ? std::string_view() : text_.substr(begin, lastEnd_ - begin);
}

std::string_view StatementReader::neededPiece(unsigned stops, std::string_view expected) {
  const std::string_view found = piece(stops);
  if (found.empty()) fail(expected);
  return found;
}

bool StatementReader::takeOperator(Op op, std::string_view expected) {
  if (token_.kind == Token::Kind::operation && token_.op == op) {
    take();
    return true;
  }
  fail(expected);
  return false;
}

void StatementReader::add() {
  statement_.text = trimmed(text_.substr(begin_));
  statements_.push_back(std::move(statement_));
  statement_ = {};
}

void StatementReader::run() {
  if (isEnd()) {
    // Nothing but comments, of which the last may never end.
    if (!lexer_.fault()) return;
    statement_.fault = lexer_.fault();
    statement_.fault.offset += place_;
    return add();
  }
  readStatement();
}

void StatementReader::readStatement() {
  statement_.kind = StatementKind::unknown;
  if (takeWord("CALCULATE")) {
    statement_.kind = StatementKind::calculate;
  } else if (takeWord("CREATE")) {
    readCreate();
  } else if (takeWord("ALTER")) {
    readChange(StatementKind::alter);
  } else if (takeWord("UPDATE")) {
    readChange(StatementKind::update);
  } else if (takeWord("DROP")) {
    readChange(StatementKind::drop);
  } else if (takeWord("SCOPE")) {
    readScope();
  } else if (takeWord("FREEZE")) {
    statement_.kind = StatementKind::freeze;
    statement_.range = piece(0);
  } else if (isAt("IF")) {
    return readIf();
  } else if (token_.kind == Token::Kind::endWord) {
    take();
    if (takeWord("SCOPE"))
      statement_.kind = StatementKind::endScope;
    else
      fail("SCOPE");
  } else {
    readAssignment(0);
  }
  if (!isEnd()) fail("\";\"");
  if (lexer_.fault() && lexer_.fault().offset + place_ < statement_.fault.offset)
    statement_.fault = {lexer_.fault().offset + place_, lexer_.fault().expected};
  add();
}

void StatementReader::readCreate() {
  for (;;) {
    if (takeWord("HIDDEN"))
      statement_.hidden = true;
    else if (takeWord("DYNAMIC"))
      statement_.dynamic = true;
    else if (!takeWord("SESSION") && !takeWord("STATIC") && !takeWord("GLOBAL") && !takeWord("CALCULATED"))
      break;
  }
  if (takeWord("MEMBER")) return readMember();
  if (takeWord("SET")) {
    statement_.kind = StatementKind::set;
    return readDefinition();
  }
  if (takeWord("CELL")) return readCells();
  if (takeWord("KPI")) {
    statement_.kind = StatementKind::kpi;
    return readDefinition();
  }
  if (takeWord("ACTION")) return readOffered();
  if (takeWord("MEASURE")) {
    statement_.kind = StatementKind::measure;
    statement_.name = neededPiece(kEqual, "a name");
    if (takeOperator(Op::equal, "\"=\"")) statement_.expression = neededPiece(0, "a value");
    return;
  }
  if (takeWord("SUBCUBE")) {
    statement_.kind = StatementKind::subcube;
    return readDefinition();
  }
  // CREATE [Measures].[x] = 1
  if (token_.kind == Token::Kind::reference && token_.parts > 1) return readMember();
  fail("MEMBER, SET, CELL CALCULATION, KPI, ACTION or SUBCUBE");
  piece(0);
}

void StatementReader::readMember() {
  statement_.kind = StatementKind::member;
  readDefinition();
}

void StatementReader::readCells() {
  statement_.kind = StatementKind::cells;
  if (!takeWord("CALCULATION")) fail("CALCULATION");
  statement_.name = neededPiece(kFor | kAs, "a name");
  if (takeWord("FOR"))
    statement_.range = neededPiece(kAs, "the cells");
  else
    fail("FOR");
  if (takeOperator(Op::as, "AS")) statement_.expression = neededPiece(kComma, "a value");
  readProperties();
}

void StatementReader::readOffered() {
  statement_.kind = StatementKind::action;
  statement_.name = neededPiece(kFor | kAs, "a name");
  if (takeWord("FOR")) statement_.range = neededPiece(kAs, "what it is offered on");
  if (takeOperator(Op::as, "AS")) statement_.expression = neededPiece(kComma, "a value");
  readProperties();
}

/// A name, AS, and what it means.
void StatementReader::readDefinition() {
  statement_.name = neededPiece(kAs | kEqual | kComma, "a name");
  if (token_.op == Op::equal && token_.kind == Token::Kind::operation)
    take();
  else if (!takeOperator(Op::as, "AS")) {
    piece(0);
    return;
  }
  statement_.expression = neededPiece(kComma, "a value");
  readProperties();
}

void StatementReader::readProperties() {
  while (token_.kind == Token::Kind::comma) {
    take();
    StatementProperty property;
    property.name = neededPiece(kEqual | kComma, "a property");
    if (takeOperator(Op::equal, "\"=\"")) property.value = neededPiece(kComma, "a value");
    if (!property.value.empty()) statement_.properties.push_back(property);
  }
}

/// ALTER CUBE CURRENTCUBE UPDATE DIMENSION [Date], DEFAULT_MEMBER = ...; UPDATE MEMBER ... AS ...; DROP SET
/// x, y
void StatementReader::readChange(StatementKind kind) {
  statement_.kind = kind;
  if (kind == StatementKind::drop) {
    statement_.name = neededPiece(0, "what to drop");
    return;
  }
  statement_.name = neededPiece(kAs | kComma | kEqual, "what to change");
  if (token_.kind == Token::Kind::operation) {
    take();
    statement_.expression = neededPiece(kComma, "a value");
  }
  readProperties();
}

void StatementReader::readScope() {
  statement_.kind = StatementKind::scope;
  statement_.range = neededPiece(0, "the cells");
}

/// `(tuple) = value`, `THIS = value`, `FORE_COLOR(THIS) = value`.
void StatementReader::readAssignment(unsigned stops) {
  const bool property =
      token_.kind == Token::Kind::call && token_.bare &&
      std::any_of(kCellProperties.begin(), kCellProperties.end(), [&](auto word) { return isAt(word); });
  if (property) {
    statement_.property = text_.substr(token_.begin, token_.end - token_.begin);
    take();
  }
  statement_.range = neededPiece(kEqual | stops, "a statement");
  if (!takeOperator(Op::equal, "\"=\"")) {
    piece(stops);
    return;
  }
  statement_.kind = StatementKind::assignment;
  statement_.expression = neededPiece(kComma | stops, "a value");
  readProperties();
}

/// IF condition THEN assignment, any number of ELSEIF, ELSE, and END IF.
void StatementReader::readIf() {
  std::string_view condition;
  for (bool first = true; !isEnd(); first = false) {
    if (token_.kind == Token::Kind::elseWord) {
      take();
      if (isAt("IF")) continue;
    } else if (isAt("IF") || isAt("ELSEIF")) {
      take();
      condition = neededPiece(kThen, "a condition");
      if (token_.kind == Token::Kind::thenWord)
        take();
      else
        fail("THEN");
    } else {
      break;
    }
    statement_.condition = condition;
    const ExpressionFault before = statement_.fault;
    readAssignment(kBranchEnd);
    if (before) statement_.fault = before;
    if (token_.kind == Token::Kind::elseWord || isAt("ELSEIF")) add();
    if (!first && isEnd()) break;
  }
  if (token_.kind == Token::Kind::endWord) {
    take();
    if (!takeWord("IF")) fail("IF");
  } else {
    fail("END IF");
  }
  if (!isEnd()) fail("\";\"");
  add();
}

}  // namespace

std::string_view statementWords(StatementKind kind) noexcept {
  return kStatementWords[static_cast<std::size_t>(kind)];
}

std::vector<ScriptStatement> parseScript(std::string_view script) {
  std::vector<ScriptStatement> statements;
  std::vector<std::uint32_t> scopes;
  StatementCutter cutter(script);
  for (std::string_view text; cutter.next(text);) {
    std::size_t added = statements.size();
    StatementReader(text, static_cast<std::size_t>(text.data() - script.data()), statements).run();
    for (; added < statements.size(); ++added) {
      ScriptStatement& statement = statements[added];
      const bool ends = statement.kind == StatementKind::endScope;
      if (ends && scopes.empty() && !statement.fault)
        statement.fault = {static_cast<std::size_t>(statement.text.data() - script.data()),
                           "SCOPE before it"};
      if (ends && !scopes.empty()) scopes.pop_back();
      statement.scope = scopes.empty() ? ScriptStatement::kNoScope : scopes.back();
      if (statement.kind == StatementKind::scope) scopes.push_back(static_cast<std::uint32_t>(added));
    }
  }
  return statements;
}

bool isExpression(std::string_view value) {
  PieceBuffer pieces;
  Lexer lexer(value, ExpressionLanguage::mdx, pieces);
  const Token first = lexer.next(false);
  if (lexer.next(false).kind != Token::Kind::end) return true;
  return first.kind == Token::Kind::reference && !first.bare;
}

}  // namespace tav
