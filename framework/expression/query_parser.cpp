#include "framework/expression/query_parser.h"

#include <utility>

#include "framework/expression/parser.h"
#include "framework/expression/query_words.h"
#include "framework/expression/words.h"

namespace tav {

QueryParser::QueryParser(Query& query, std::string_view text) : query_(query) {
  query_.source = text;
  lexer_ = std::make_unique<Lexer>(text, ExpressionLanguage::sql, query_.pieces);
}

void QueryParser::run() {
  do {
    startStatement();
    take();
    while (token_.kind != Token::Kind::end) step();
    closeToClauses();
    while (frames_.size() > 1) {
      fail("\")\"");
      closeFrame();
    }
    begin(Clause::none);
  } while (nextStatement());
  finishLexer();
  if (query_.main == kNoQuery) fail("SELECT");
}

void QueryParser::startStatement() {
  frames_.assign(1, Frame());
  extends_ = afterName_ = false;
  frame().query = addQuery(kNoQuery);
}

/// What stands behind a semicolon.
bool QueryParser::nextStatement() {
  if (token_.begin >= query_.source.size()) return false;
  finishLexer();
  base_ = token_.begin + 1;
  lexer_ = std::make_unique<Lexer>(query_.source.substr(base_), ExpressionLanguage::sql, query_.pieces);
  return true;
}

void QueryParser::finishLexer() {
  const ExpressionFault& fault = lexer_->fault();
  if (fault && base_ + fault.offset <= query_.fault.offset)
    query_.fault = {base_ + fault.offset, fault.expected};
}

void QueryParser::fail(std::string_view expected) {
  if (token_.begin < query_.fault.offset) query_.fault = {token_.begin, expected};
}

void QueryParser::take() {
  lastEnd_ = token_.end;
  token_ = lexer_->next(false);
  token_.begin += base_;
  token_.end += base_;
}

void QueryParser::step() {
  const bool extends = std::exchange(extends_, false);
  if (extends && isName()) return extendName();
  if (extends && token_.op == Op::times && star()) return;
  const bool afterName = std::exchange(afterName_, false);
  if (extends && token_.kind != Token::Kind::dot) fail("a name");
  switch (token_.kind) {
    case Token::Kind::openBracket:
      touch();
      return open();
    case Token::Kind::closeBracket:
      return close();
    case Token::Kind::comma:
      return comma();
    case Token::Kind::dot:
      extends_ = afterName || extends;
      return dot();
    case Token::Kind::reference:
    case Token::Kind::call:
      return name();
    case Token::Kind::operation:
      return operation();
    case Token::Kind::openBrace:
      // {fn NOW()}, {d '2024-01-31'}, {oj a LEFT OUTER JOIN b ON ...}
      take();
      if (isWordToken() && (isEscapeWord(token_.text, lexer_->peek()) || isWord(token_.text, "OJ"))) take();
      return;
    case Token::Kind::closeBrace:
      return take();
    case Token::Kind::unknown:
      fail("a value");
      return take();
    default:
      return value();
  }
}

QueryPart& QueryParser::part() {
  const Sink sink = frame().sink;
  switch (sink.kind) {
    case Sink::Kind::column:
      return query_.blocks[sink.block].columns.back();
    case Sink::Kind::condition:
      return query_.conditions[sink.index];
    case Sink::Kind::table:
      return query_.blocks[sink.block].tables[sink.index].inputs;
    default:
      return query_.others;
  }
}

/// Makes the token at hand part of the column or condition that is being read.
void QueryParser::touch() {
  Frame& top = frame();
  if (!inClauses()) return;
  const bool ofColumn = top.clause == Clause::columns;
  if (!ofColumn && (top.clause != Clause::condition || top.outerCondition != kNoQuery)) return;
  QueryPart& whole = part();
  if (whole.end == 0) whole.begin = token_.begin;
  whole.end = token_.end;
  if (ofColumn) ++top.tokens;
}

// Brackets.

void QueryParser::push(Open what) {
  if (frames_.size() == kMaxExpressionDepth + 1) fail("at most 1,000 levels");
  Frame made = frame();
  made.open = what;
  made.value = false;
  made.skips = what == Open::bracket && made.skips;
  made.from = what == Open::joins;
  frames_.push_back(made);
}

/// Opens the bracket at hand as what it holds. `rowsOnly`: the values of a sub-query do not matter.
void QueryParser::open(bool rowsOnly) {
  const Frame& top = frame();
  take();
  if (!inClauses()) {
    if (top.open == Open::bracket || top.open == Open::window) return openSubQuery(rowsOnly);
    return push(top.open);
  }
  switch (top.clause) {
    case Clause::none:  // one of the queries that UNION puts together
      return push(Open::query);
    case Clause::expressions:
    case Clause::tables:
    case Clause::joined:
      if (openInFrom()) return;
      return push(Open::ignored);
    case Clause::into:
    case Clause::tail:
      return push(Open::ignored);
    default:
      return openSubQuery(rowsOnly);
  }
}

/// A bracket in WITH or FROM, whose first token is at hand.
bool QueryParser::openInFrom() {
  Frame& top = frame();
  const QueryWord what = isWordToken() ? queryWordOf(token_.text) : QueryWord::none;
  if (top.clause == Clause::joined) {
    if (block().tables.empty()) return false;
    if (table().alias.empty() && table().kind == QueryTable::Kind::table) return false;  // a hint
    push(Open::names);
    return true;
  }
  if (top.clause == Clause::expressions) {
    auto& expressions = query_.queries[top.query].expressions;
    if (expressions.empty()) return false;
    if (!std::exchange(top.value, false)) {
      push(Open::names);
      return true;
    }
    const std::uint32_t id = addQuery(top.query);
    query_.queries[top.query].expressions.back().query = id;
    push(Open::query);
    frame().query = id;
    frame().parentBlock = kNoQuery;
  } else if (what == QueryWord::select || what == QueryWord::with) {
    const std::uint32_t id = addQuery(top.query);
    addTable(QueryTable::Kind::query).query = id;
    push(Open::query);
    frame().query = id;
    frame().parentBlock = frame().block;
  } else if (what == QueryWord::values) {
    addTable(QueryTable::Kind::values);
    push(Open::bracket);
    frame().sink = {Sink::Kind::table, frame().block, static_cast<std::uint32_t>(block().tables.size() - 1)};
    take();
    return true;
  } else {
    push(Open::joins);
    return true;
  }
  frame().clause = Clause::none;
  return true;
}

/// A bracket among values, whose first token is at hand.
void QueryParser::openSubQuery(bool rowsOnly) {
  const QueryWord what = isWordToken() ? queryWordOf(token_.text) : QueryWord::none;
  if (what != QueryWord::select && what != QueryWord::with) return push(Open::bracket);
  const std::uint32_t id = addQuery(frame().query);
  if (!rowsOnly) part().queries.push_back(id);
  const Sink sink = frame().sink;
  push(Open::query);
  Frame& made = frame();
  made.query = id;
  made.parentBlock = made.block;
  made.clause = Clause::none;
  if (sink.kind == Sink::Kind::condition) made.outerCondition = sink.index;
}

void QueryParser::close() {
  if (frames_.size() == 1) {
    fail("\"(\" before it");
    return take();
  }
  closeFrame();
  touch();
  take();
}

void QueryParser::closeFrame() {
  if (inClauses()) begin(Clause::none);
  const Open closed = frame().open;
  frames_.pop_back();
  Frame& top = frame();
  if (inClauses() && top.clause == Clause::tables) top.clause = Clause::joined;
  if (closed != Open::names && closed != Open::ignored) top.value = top.clause != Clause::expressions;
}

/// Gives up on brackets that should have been closed before the word at hand.
void QueryParser::closeToClauses() {
  while (!inClauses()) {
    fail("\")\"");
    closeFrame();
    if (inClauses() && (frame().clause == Clause::columns || frame().clause == Clause::condition))
      part().end = lastEnd_;
  }
}

/// Passes over what stands between brackets, if they come next.
void QueryParser::skipBrackets() {
  if (!isOpenBracket()) return;
  std::size_t depth = 0;
  while (token_.kind != Token::Kind::end) {
    if (isOpenBracket()) ++depth;
    if (token_.kind == Token::Kind::closeBracket) --depth;
    take();
    if (depth == 0) return;
  }
  fail("\")\"");
}

// Names and values.

void QueryParser::name() {
  Frame& top = frame();
  if (top.open == Open::ignored) return take();
  if (top.open == Open::names) return newName();
  if (top.open == Open::pivot) return pivotName();
  if (isWordToken() && word(queryWordOf(token_.text))) return;
  if (inClauses()) {
    switch (top.clause) {
      case Clause::expressions:
        return expressionName();
      case Clause::tables:
        return tableName();
      case Clause::joined:
        return tableAlias();
      case Clause::none:
      case Clause::into:
      case Clause::tail:
        return take();
      default:
        break;
    }
  }
  if (top.skips) return take();
  if (token_.kind == Token::Kind::call) return call();
  if (top.value) return alias();
  reference();
}

void QueryParser::value() {
  const bool string = token_.kind == Token::Kind::string;
  if (string && inColumns() && frame().value && column().name.empty()) {
    column().name = token_.text;  // SELECT a 'alias'
  } else {
    touch();
    frame().value = token_.kind != Token::Kind::caseWord && token_.kind != Token::Kind::whenWord &&
                    token_.kind != Token::Kind::thenWord && token_.kind != Token::Kind::elseWord;
  }
  take();
}

void QueryParser::startName() {
  nameBegin_ = token_.begin;
  afterName_ = true;
}

void QueryParser::reference() {
  touch();
  frame().value = true;
  // Variables, and amounts of money.
  if (token_.text.front() != '@' && token_.text.front() != '$') {
    part().references.push_back({token_.text, frame().block});
    startName();
  }
  take();
}

/// The next part of a name that has an empty one: db..table
void QueryParser::extendName() {
  const std::string_view whole = query_.source.substr(nameBegin_, token_.end - nameBegin_);
  const bool called = token_.kind == Token::Kind::call;
  if (inClauses() && frame().clause == Clause::joined) {
    table().name = whole;
    if (called) table().kind = QueryTable::Kind::function;
  } else if (called) {
    part().references.pop_back();
    touch();
  } else {
    part().references.back().name = whole;
    touch();
  }
  afterName_ = !called;
  take();
}

/// A name behind a value.
void QueryParser::alias() {
  if (isWord(token_.text, "AT") && lexer_->peek() != '\0') {
    // x AT TIME ZONE 'UTC'
    const Token word = token_;
    take();
    if (isWordToken() && isWord(token_.text, "TIME")) {
      take();
      frame().value = false;
      if (isWordToken()) take();
    } else if (inColumns()) {
      column().name = word.text;
    }
    return;
  }
  if (inColumns() && column().name.empty()) {
    column().name = token_.text;
    return take();
  }
  fail("an operator");
  reference();
}

void QueryParser::call() {
  const std::string_view function = token_.text.substr(token_.lastPart);
  if (token_.parts > 1 && isValueMethod(function)) {
    part().references.push_back({token_.text.substr(0, token_.lastPart - 1), frame().block});
  }
  const bool skips = frame().skips || takesWordFirst(function);
  const bool hasFrom = isFromFunction(function);
  touch();
  take();
  touch();
  open();
  if (frame().open != Open::bracket) return;
  frame().skips = skips;
  frame().from = hasFrom;
}

void QueryParser::operation() {
  Frame& top = frame();
  if (token_.op == Op::as) return behindAs();
  if (token_.op == Op::times && star()) return;
  if (token_.op == Op::equal && inColumns() && top.tokens == 1 && column().name.empty() && top.value) {
    // alias = value
    QueryColumn& made = column();
    made.name = query_.source.substr(made.begin, made.end - made.begin);
    made.references.clear();
    made.begin = made.end = 0;
    top.tokens = 0;
  } else {
    touch();
  }
  top.value = false;
  take();
}

void QueryParser::behindAs() {
  Frame& top = frame();
  take();
  if (top.open == Open::bracket) {
    top.skips = true;  // the type of a CAST
  } else if (inClauses() && top.clause == Clause::expressions) {
    top.value = true;
  } else if (inClauses() && (top.clause == Clause::columns || top.clause == Clause::joined)) {
    if (top.clause == Clause::joined && (isName() || block().tables.empty())) return tableAlias();
    if (!isName() && token_.kind != Token::Kind::string) return fail("a name");
    (top.clause == Clause::columns ? column().name : table().alias) = token_.text;
    take();
  }
}

/// A `*` that stands for columns.
bool QueryParser::star() {
  const bool qualified = afterName_;
  if (!qualified && !(inColumns() && frame().tokens == 0)) return false;
  afterName_ = false;
  std::string_view qualifier;
  if (qualified && !(inClauses() && frame().clause == Clause::joined)) {
    qualifier = part().references.back().name;
    part().references.pop_back();
  }
  if (inColumns()) {
    column().star = true;
    column().qualifier = qualifier;
  }
  touch();
  frame().value = true;
  take();
  return true;
}

void QueryParser::comma() {
  Frame& top = frame();
  if (inClauses() && top.clause == Clause::columns) {
    endColumn();
    block().columns.emplace_back();
  } else if (inClauses() && top.from) {
    begin(Clause::tables);
  } else {
    touch();
  }
  top.value = top.skips = false;
  take();
}

void QueryParser::dot() {
  touch();
  take();
  if (extends_) {
    afterName_ = true;
    return;
  }
  // A property or a method of what a bracket closes.
  if (isName()) {
    touch();
    take();
  }
}

void QueryParser::newName() {
  const Frame& outer = frames_[frames_.size() - 2];
  if (outer.clause == Clause::expressions)
    query_.queries[outer.query].expressions.back().columns.push_back(token_.text);
  else
    table().columns.push_back(token_.text);
  take();
}

/// PIVOT (SUM(a) FOR b IN ([x], [y])), UNPIVOT (a FOR b IN (x, y))
void QueryParser::pivotName() {
  if (isWordToken() && isWord(token_.text, "FOR")) {
    pivotPart_ = PivotPart::column;
  } else if (isWordToken() && isWord(token_.text, "IN")) {
    pivotPart_ = PivotPart::list;
  } else if (token_.kind == Token::Kind::reference) {
    auto& tables = block().tables;
    if (unpivot_ && pivotPart_ == PivotPart::column)
      tables[tables.size() - 2].columns.push_back(token_.text);
    else if (pivotPart_ == (unpivot_ ? PivotPart::value : PivotPart::list))
      table().columns.push_back(token_.text);
    else
      table().inputs.references.push_back({token_.text, frame().block});
  }
  take();
}

Query parseQuery(std::string_view text) {
  Query query;
  QueryParser(query, text).run();
  return query;
}

}  // namespace tav
