#include "framework/expression/parser.h"
#include "framework/expression/query_parser.h"
#include "framework/expression/query_words.h"
#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"

namespace tav {

std::uint32_t QueryParser::addQuery(std::uint32_t parent) {
  query_.queries.emplace_back().parent = parent;
  return static_cast<std::uint32_t>(query_.queries.size() - 1);
}

QueryTable& QueryParser::addTable(QueryTable::Kind kind) {
  QueryTable& made = block().tables.emplace_back();
  made.kind = kind;
  made.begin = token_.begin;
  return made;
}

/// Reads the word at hand as what it means here; false when it is a name.
bool QueryParser::word(QueryWord what) {
  if (frame().open == Open::window && isWindowWord(token_.text)) {
    take();
    frame().value = false;
    return true;
  }
  switch (what) {
    case QueryWord::none:
      return false;
    case QueryWord::over:
      if (!frame().value) return false;
      touch();
      take();
      if (isWordToken() && isWord(token_.text, "GROUP")) take();
      touch();
      take();
      if (query_.source[lastEnd_ - 1] == '(') push(Open::window);
      return true;
    case QueryWord::collate:
      touch();
      take();
      touch();
      take();
      return true;
    case QueryWord::exists:
      touch();
      take();
      touch();
      if (isOpenBracket()) open(true);
      return true;
    case QueryWord::values:
    case QueryWord::operation:
      touch();
      frame().value = false;
      take();
      return true;
    case QueryWord::direction:
      take();
      return true;
    default:
      return clauseWord(what);
  }
}

/// A word that begins a clause, or is part of one.
bool QueryParser::clauseWord(QueryWord what) {
  if (what == QueryWord::side && token_.kind == Token::Kind::call) return false;
  if (!inClauses()) {
    if (what == QueryWord::joinKind || what == QueryWord::side || what == QueryWord::hint ||
        what == QueryWord::pivot)
      return false;
    // TRIM(x FROM y), an aggregate's ORDER BY
    const bool from = what == QueryWord::from && frame().from;
    if (from || what == QueryWord::order || what == QueryWord::tail || what == QueryWord::with) {
      frame().value = false;
      take();
      return true;
    }
    closeToClauses();
  }
  Frame& top = frame();
  if (what == QueryWord::select) {
    select();
    return true;
  }
  if (top.clause == Clause::expressions) {
    fail("SELECT");
    take();
    return true;
  }
  if (top.clause == Clause::none) {
    top.excepted = what == QueryWord::except;
    if (what == QueryWord::with) top.clause = Clause::expressions;
    if (what == QueryWord::order && !query_.queries[top.query].blocks.empty()) begin(Clause::others);
    take();
    return true;
  }
  if (fromWord(what)) return true;
  // Behind the ORDER BY of a union whose SELECTs all stand in brackets there is nothing to add tables to.
  const bool needsSelect = what == QueryWord::from || what == QueryWord::where || what == QueryWord::having;
  if (needsSelect && top.block == kNoQuery) {
    fail("SELECT");
    take();
    return true;
  }
  switch (what) {
    case QueryWord::from:
      begin(Clause::tables);
      top.from = true;
      break;
    case QueryWord::where:
    case QueryWord::having:
      top.from = false;
      condition();
      break;
    case QueryWord::group:
    case QueryWord::order:
      top.from = false;
      begin(Clause::others);
      break;
    case QueryWord::unite:
    case QueryWord::except:
      top.from = false;
      begin(Clause::none);
      top.excepted = what == QueryWord::except;
      break;
    case QueryWord::into:
      begin(Clause::into);
      break;
    case QueryWord::tail:
      top.from = false;
      begin(Clause::tail);
      break;
    case QueryWord::with:
      take();
      skipBrackets();
      return true;
    default:
      return false;
  }
  take();
  return true;
}

/// A word that means something in FROM alone.
bool QueryParser::fromWord(QueryWord what) {
  Frame& top = frame();
  if (!top.from) return false;
  switch (what) {
    case QueryWord::on:
      condition();
      break;
    case QueryWord::join:
      begin(Clause::tables);
      break;
    case QueryWord::joinKind:
    case QueryWord::side:
      begin(Clause::joined);
      break;
    case QueryWord::pivot:
      if (top.clause != Clause::joined || token_.kind != Token::Kind::call) return false;
      pivot();
      return true;
    case QueryWord::hint:
      take();
      skipBrackets();
      return true;
    case QueryWord::tail:
      if (top.clause != Clause::joined || !isWord(token_.text, "FOR")) return false;
      take();
      if (isWordToken() && isWord(token_.text, "SYSTEM_TIME")) {
        systemTime();
      } else {
        top.from = false;
        begin(Clause::tail);
      }
      return true;
    default:
      return false;
  }
  take();
  return true;
}

void QueryParser::begin(Clause clause) {
  Frame& top = frame();
  if (top.clause == Clause::columns) endColumn();
  if (top.clause == Clause::tables) fail("a table");
  top.clause = clause;
  top.sink = {};
  top.value = top.skips = false;
}

void QueryParser::select() {
  if (frame().clause != Clause::none && frame().clause != Clause::expressions) {
    begin(Clause::none);
    if (frames_.size() == 1)
      startStatement();
    else
      fail("one SELECT");
  }
  Frame& top = frame();
  top.open = Open::query;
  top.from = false;
  const auto id = static_cast<std::uint32_t>(query_.blocks.size());
  QueryBlock& made = query_.blocks.emplace_back();
  made.query = top.query;
  made.parent = frames_.size() <= kMaxExpressionDepth ? top.parentBlock : kNoQuery;
  made.columns.emplace_back();
  if (!top.excepted) {
    query_.queries[top.query].blocks.push_back(id);
    if (top.query == frames_.front().query && query_.main == kNoQuery) query_.main = top.query;
  }
  top.excepted = false;
  top.block = id;
  begin(Clause::columns);
  top.sink = {Sink::Kind::column, id, 0};
  top.tokens = 0;
  take();
  skipTop();
}

/// DISTINCT, TOP (10) PERCENT WITH TIES
void QueryParser::skipTop() {
  while (token_.op == Op::distinct || (isWordToken() && isWord(token_.text, "ALL"))) take();
  if (!isWordToken() || !isWord(token_.text, "TOP")) return;
  take();
  if (isOpenBracket())
    skipBrackets();
  else
    take();
  if (isWordToken() && isWord(token_.text, "PERCENT")) take();
  if (!isWordToken() || !isWord(token_.text, "WITH")) return;
  take();
  take();
}

void QueryParser::condition() {
  begin(Clause::condition);
  Frame& top = frame();
  if (top.outerCondition == kNoQuery) {
    top.sink = {Sink::Kind::condition, 0, static_cast<std::uint32_t>(query_.conditions.size())};
    query_.conditions.emplace_back();
  } else {
    top.sink = {Sink::Kind::condition, 0, top.outerCondition};
  }
}

void QueryParser::endColumn() {
  Frame& top = frame();
  QueryColumn& made = column();
  if (top.tokens == 0) {
    fail("a value");
    block().columns.pop_back();
  } else if (made.references.size() == 1 && !made.star &&
             (top.tokens == 1 || query_.textOf(made) == made.references.front().name)) {
    made.copy = true;
    if (made.name.empty()) {
      const std::string_view name = made.references.front().name;
      for (std::size_t place = 0; place < name.size();) {
        const std::size_t length = namePartLength(name.substr(place));
        made.name = name.substr(place, length);
        place += length + 1;
      }
    }
  }
  top.tokens = 0;
}

void QueryParser::tableName() {
  const bool called = token_.kind == Token::Kind::call;
  QueryTable& made = addTable(called ? QueryTable::Kind::function : QueryTable::Kind::table);
  made.name = token_.text;
  const bool method = called && token_.parts > 1 && isValueMethod(token_.text.substr(token_.lastPart));
  if (method) made.name = {};  // a.b.nodes('/c')
  frame().clause = Clause::joined;
  startName();
  take();
  if (!called) return;
  afterName_ = false;
  take();
  if (isWordToken() && isTableHint(token_.text)) {
    made.kind = QueryTable::Kind::table;
    return push(Open::ignored);
  }
  push(Open::bracket);
}

void QueryParser::tableAlias() {
  if (block().tables.empty() || !table().alias.empty()) {
    fail("JOIN");
    return take();
  }
  table().alias = token_.text;
  const bool named = token_.kind == Token::Kind::call;
  take();
  if (!named) return;
  take();
  push(Open::names);
}

void QueryParser::pivot() {
  unpivot_ = isWord(token_.text, "UNPIVOT");
  pivotPart_ = PivotPart::value;
  // The names that UNPIVOT gives the columns are constants, in a table of their own before it.
  if (unpivot_) addTable(QueryTable::Kind::values);
  addTable(QueryTable::Kind::pivot);
  take();
  take();
  push(Open::pivot);
}

/// FOR SYSTEM_TIME AS OF '2024-01-31', BETWEEN a AND b, ALL
void QueryParser::systemTime() {
  const auto isTime = [&] {
    return token_.kind == Token::Kind::string || (isName() && token_.text.front() == '@');
  };
  while (token_.kind != Token::Kind::end && !isTime()) {
    const bool all = isWordToken() && isWord(token_.text, "ALL");
    take();
    if (all) return;
  }
  take();
  if (token_.op != Op::logicalAnd && !(isWordToken() && isWord(token_.text, "TO"))) return;
  take();
  take();
}

void QueryParser::expressionName() {
  query_.queries[frame().query].expressions.push_back({token_.text, kNoQuery, {}});
  frame().value = false;
  const bool named = token_.kind == Token::Kind::call;
  take();
  if (!named) return;
  take();
  push(Open::names);
}

}  // namespace tav
