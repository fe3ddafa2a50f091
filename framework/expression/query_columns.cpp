// SELECT with its columns, and the clauses behind FROM.

#include "framework/expression/query_parser.h"
#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"

namespace tav {

void QueryParser::select() {
  fillTarget();
  const std::uint32_t id = addBlock();
  Frame& top = frame();
  top.kind = Frame::Kind::query;
  top.block = id;
  top.sink = {Sink::Kind::column, id, 0};
  take();
  selectHead();
}

/// A SELECT where none can stand: a statement begins, or UNION was forgotten.
void QueryParser::nextSelect() {
  endClause(before_);
  if (frames_.size() == 1) {
    finishStatement();
    startStatement();
    enter(State::column);
  } else {
    fail("one SELECT");
  }
  select();
}

/// DISTINCT ON (a), TOP (10) PERCENT WITH TIES, AS STRUCT
void QueryParser::selectHead() {
  while (tokens_.at().op == Op::distinct || tokens_.isWord("ALL") || tokens_.isWord("UNIQUE")) take();
  if (tokens_.isWord("ON") && tokens_.isOpenBracket(1)) {
    take();
    take();
    push(Frame::Kind::bracket, State::bracketOperand).sink = {};
    return;
  }
  if (tokens_.at().op == Op::as) {
    take();
    take();
  }
  if (!tokens_.isWord("TOP") || !tokens_.startsCount(1)) return;
  take();
  if (tokens_.isOpenBracket()) {
    skipBrackets(&QueryParser::take);
  } else {
    // A parameter has a sign before its name.
    if (tokens_.at().kind == Token::Kind::operation) take();
    take();
  }
  if (tokens_.isWord("PERCENT")) take();
  if (!tokens_.isWord("WITH")) return;
  take();
  take();
}

// Columns.

void QueryParser::nextColumn() {
  endColumn();
  block().columns.emplace_back();
  frame().sink.index = static_cast<std::uint32_t>(block().columns.size() - 1);
  take();
}

void QueryParser::endColumn() {
  QueryColumn& made = column();
  if (made.end == 0) {
    fail("a value");
    block().columns.pop_back();
    return;
  }
  if (!made.copy) return;
  const std::string_view name = made.references.front().name;
  if (made.name.empty()) {
    for (std::size_t place = 0; place < name.size();) {
      const std::size_t length = namePartLength(name.substr(place));
      made.name = name.substr(place, length);
      place += length + 1;
    }
  }
  if (frame().renamed != kNoQuery) block().columns[frame().renamed].hidden.push_back(name);
}

/// A `*` where a column begins stands for columns; elsewhere it is a sign between values, or that of
/// COUNT(*).
void QueryParser::star() {
  touchAndTake();
  column().star = true;
}

/// t.*, as a column or as an argument: COUNT(t.*)
bool QueryParser::qualifiedStar() {
  const Token name = tokens_.at();
  if (tokens_.at(1).kind != Token::Kind::dot || tokens_.at(2).op != Op::times) return false;
  touchAndTake();
  touchAndTake();
  touchAndTake();
  if (before_ != State::column) return true;
  column().star = true;
  column().qualifier = name.text;
  enter(State::columnStar);
  return true;
}

/// * EXCEPT (a, b), * EXCLUDE a, * REPLACE (a + 1 AS a), * RENAME (a AS b)
void QueryParser::starWord() {
  const bool leavesOut = tokens_.isWord("EXCEPT") || tokens_.isWord("EXCLUDE");
  const bool renames = tokens_.isWord("RENAME");
  if (!leavesOut && !renames && !tokens_.isWord("REPLACE")) {
    if (before_ == State::columnStar && tokens_.sign() == Sign::except) return unite();
    return unexpectedName();
  }
  if (!tokens_.isOpenBracket(1)) {
    touchAndTake();
    if (leavesOut) column().hidden.push_back(tokens_.at().text);
    return touchAndTake();
  }
  if (leavesOut && tokens_.startsQuery(2)) return unite();
  touchAndTake();
  if (leavesOut) return listNames(column().hidden);
  take();
  // What replaces a column is one of its own, which is found by name before the star is asked.
  const std::uint32_t ofStar = frame().sink.index;
  Frame& made = push(Frame::Kind::query, State::column);
  if (renames) made.renamed = ofStar;
  block().columns.emplace_back();
  made.sink.index = static_cast<std::uint32_t>(block().columns.size() - 1);
}

/// A name behind a value.
void QueryParser::alias() {
  if (!column().name.empty()) return tokens_.isName() ? unexpectedName() : value();
  column().name = tokens_.at().text;
  take();
}

/// AS of a column: a name must follow.
void QueryParser::columnName() {
  column().name = tokens_.at().text;
  take();
}

void QueryParser::expectName() {
  fail("a name");
}

/// alias = value
void QueryParser::equalSign() {
  QueryColumn& made = column();
  if (!made.name.empty()) return operation();
  made.name = query_.source.substr(made.begin, made.end - made.begin);
  made.references.clear();
  made.begin = made.end = 0;
  made.copy = false;
  enter(State::column);
  take();
}

// Clauses.

/// Ends the clause at hand. What is named from now on is of no interest until the next clause says so.
void QueryParser::begin() {
  endClause(before_);
  frame().sink = {};
}

void QueryParser::endClause(State state) {
  const bool inColumn = state >= State::column && state <= State::columnEnd;
  if (state == State::columnAlias) fail("a name");
  if (inColumn) endColumn();
  if (state == State::table) fail("a table");
}

/// Behind the ORDER BY of a union whose SELECTs all stand in brackets there is nothing to add tables to.
bool QueryParser::hasSelect() {
  if (frame().block != kNoQuery) return true;
  enter(before_);
  needSelect();
  return false;
}

void QueryParser::from() {
  if (!hasSelect()) return;
  begin();
  frame().leftTables = 0;
  take();
}

void QueryParser::condition() {
  if (!hasSelect()) return;
  begin();
  startCondition();
  take();
}

void QueryParser::startCondition() {
  Frame& top = frame();
  if (top.outerCondition == kNoQuery) {
    top.sink = {Sink::Kind::condition, 0, static_cast<std::uint32_t>(query_.conditions.size())};
    query_.conditions.emplace_back();
  } else {
    top.sink = {Sink::Kind::condition, 0, top.outerCondition};
  }
}

/// START WITH a = 1 CONNECT BY NOCYCLE PRIOR b = c
void QueryParser::connect() {
  condition();
  take();
  if (tokens_.isWord("NOCYCLE")) take();
}

/// GROUP BY, ORDER BY
void QueryParser::others() {
  begin();
  take();
  if (tokens_.isWord("SIBLINGS")) take();
}

/// WINDOW w AS (PARTITION BY a)
void QueryParser::window() {
  begin();
  take();
  take();
}

void QueryParser::windowAs() {
  take();
  if (!tokens_.isOpenBracket()) return;
  take();
  push(Frame::Kind::bracket, State::windowOperand);
}

void QueryParser::startClause() {
  begin();
  take();
}

void QueryParser::intoName() {
  if (frames_.size() == 1) {
    target_ = tokens_.at().text;
    creates_ = true;
    fillTarget();
  }
  take();
}

/// UNION, INTERSECT, EXCEPT. Rows that EXCEPT takes away feed nothing; INTERSECT binds tighter, so that
/// behind EXCEPT it takes away as well.
void QueryParser::unite() {
  const Sign sign = tokens_.sign();
  begin();
  Frame& top = frame();
  if (top.kind == Frame::Kind::joins && top.block != kNoQuery && !block().tables.empty() &&
      table().kind == QueryTable::Kind::query) {
    // FROM ((SELECT ...) UNION (SELECT ...)): the bracket holds no joins but a query.
    top.kind = Frame::Kind::query;
    top.query = table().query;
    top.parentBlock = top.block;
    top.block = kNoQuery;
  }
  if (sign != Sign::intersect) top.excepted = sign == Sign::except;
  enter(State::united);
  take();
}

/// IN ((SELECT ...) UNION (SELECT ...)): the bracket holds a query.
void QueryParser::uniteBracket() {
  if (frame().nested == kNoQuery) return recover();
  const std::uint32_t id = frame().nested;
  closeFrame();
  pushQuery(id);
  frame().excepted = tokens_.sign() == Sign::except;
  enter(State::united);
  take();
}

/// GROUP BY a WITH ROLLUP, ... WITH UR; or the next statement, whose semicolon is missing.
void QueryParser::withWord() {
  const bool expression = tokens_.isName(1) && (tokens_.at(2).op == Op::as || tokens_.isOpenBracket(2));
  if (expression && frames_.size() == 1 && !tokens_.isOpenBracket(1)) return nextStatement();
  begin();
  take();
  enter(State::tail);
  if (!tokens_.isWord("ROLLUP") && !tokens_.isWord("CUBE") && !tokens_.isWord("TOTALS")) return;
  enter(State::clauseOperator);
  take();
}

}  // namespace tav
