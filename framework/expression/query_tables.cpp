// FROM: tables, joins, and what stands behind a table.

#include "framework/expression/query_parser.h"
#include "framework/expression/words.h"

namespace tav {

QueryTable& QueryParser::addTable(QueryTable::Kind kind) {
  QueryTable& made = block().tables.emplace_back();
  made.kind = kind;
  made.begin = tokens_.at().begin;
  return made;
}

/// A table follows. What was read up to here is the left side of a USING behind it.
void QueryParser::join() {
  begin();
  frame().leftTables = static_cast<std::uint32_t>(block().tables.size());
  take();
}

void QueryParser::missingTable() {
  fail("a table");
  take();
}

void QueryParser::expectJoin() {
  fail("JOIN");
  take();
}

void QueryParser::tableName() {
  if (tokens_.isWord("ONLY") && tokens_.isName(1)) {
    enter(State::table);
    return take();
  }
  const Token& token = tokens_.at();
  const bool called = token.kind == Token::Kind::call;
  QueryTable& made = addTable(called ? QueryTable::Kind::function : QueryTable::Kind::table);
  made.name = token.text;
  const std::string_view last = token.text.substr(token.lastPart);
  if (called && token.parts > 1 && isValueMethod(last)) made.name = {};  // a.b.nodes('/c')
  const bool foreign = called && isForeignFunction(token.text);
  take();
  if (!called) return;
  take();
  if (tokens_.at().bare && isTableHint(tokens_.at().text)) {
    made.kind = QueryTable::Kind::table;
    push(Frame::Kind::bracket, State::ignored);
  } else {
    push(Frame::Kind::bracket, foreign ? State::foreign : State::bracketOperand);
  }
}

/// TABLE(f(x)), TABLE (SELECT ...)
void QueryParser::tableFunction() {
  take();
  if (!tokens_.isOpenBracket()) return enter(State::table);
  const bool isTable =
      tokens_.at(1).kind == Token::Kind::call || tokens_.isOpenBracket(1) || tokens_.startsQuery(1);
  if (isTable) return openInFrom();
  // A collection has columns that nothing here tells.
  addTable(QueryTable::Kind::function);
  take();
  push(Frame::Kind::bracket, State::bracketOperand);
}

/// :table, ?, &table: the name comes with the call.
void QueryParser::parameterTable() {
  addTable(QueryTable::Kind::function);
  take();
  if (tokens_.isName()) take();
}

/// A sub-query, or tables between brackets.
void QueryParser::openInFrom() {
  if (!tokens_.startsQuery(1)) {
    take();
    push(Frame::Kind::joins, State::table);
    return;
  }
  const std::uint32_t id = addQuery(frame().query);
  addTable(QueryTable::Kind::query).query = id;
  take();
  pushQuery(id);
}

/// A bracket behind a table: (NOLOCK), or the new names of its columns behind its alias.
void QueryParser::openAfterTable() {
  const bool named =
      !block().tables.empty() && (!table().alias.empty() || table().kind != QueryTable::Kind::table);
  if (named) return listNames(table().columns);
  take();
  push(Frame::Kind::bracket, State::ignored);
}

/// t AS alias, t AS OF TIMESTAMP x
void QueryParser::tableAs() {
  take();
  if (!tokens_.isWord("OF")) return;
  enter(State::tableEnd);
  take();
  if (tokens_.isName(1) || tokens_.at(1).kind == Token::Kind::string) take();
  pastOperand();
}

void QueryParser::tableAlias() {
  if (block().tables.empty()) return expectJoin();
  table().alias = tokens_.at().text;
  const bool listed = tokens_.at().kind == Token::Kind::call;
  take();
  if (listed) listNames(table().columns);
}

/// WITH (NOLOCK), WITH (a int), WITH ORDINALITY, WITH OFFSET; else what ends the query.
void QueryParser::tableWith() {
  if (tokens_.isOpenBracket(1)) {
    take();
    return skipBrackets(&QueryParser::take);
  }
  if (!tokens_.isWord("ORDINALITY", 1) && !tokens_.isWord("OFFSET", 1)) return withWord();
  take();
  take();
}

/// FOR SYSTEM_TIME AS OF x, or what ends the query.
void QueryParser::tailInFrom() {
  const bool system =
      tokens_.isWord("FOR") &&
      (tokens_.isWord("SYSTEM_TIME", 1) || tokens_.isWord("TIMESTAMP", 1) || tokens_.isWord("VERSION", 1));
  if (!system) return startClause();
  enter(before_);
  take();
  past();
}

/// SYSTEM_TIME AS OF '2024-01-31', BETWEEN a AND b, FROM a TO b, CONTAINED IN (a, b), ALL
void QueryParser::past() {
  take();
  if (tokens_.isWord("ALL")) return take();
  take();
  if (tokens_.isWord("OF")) take();
  pastOperand();
  if (tokens_.at().op != Op::logicalAnd && !tokens_.isWord("TO")) return;
  take();
  pastOperand();
}

void QueryParser::pastOperand() {
  if (!tokens_.isOpenBracket()) take();
  skipBrackets(&QueryParser::take);
}

/// TABLESAMPLE SYSTEM (10 PERCENT) REPEATABLE (205), USE INDEX FOR JOIN (i), PARTITION (p)
void QueryParser::hint() {
  enter(before_);
  while (tokens_.isName() && !tokens_.isOpenBracket(1)) take();
  while (tokens_.isName() && tokens_.isOpenBracket(1)) {
    take();
    skipBrackets(&QueryParser::take);
    if (!tokens_.isWord("REPEATABLE")) return;
  }
}

/// What a function's result is asked for: OPENDATASOURCE(...).db.dbo.t, CAST(x AS xml).value('/a', 'int')
void QueryParser::property() {
  touchAndTake();
  if (tokens_.isName()) touchAndTake();
}

/// USING (k): a condition whose columns belong to both sides of the join.
void QueryParser::usingColumns() {
  if (!tokens_.isOpenBracket(1)) {
    enter(before_);
    return before_ == State::tableEnd ? tableAlias() : expectJoin();
  }
  begin();
  startCondition();
  touchAndTake();
  take();
  push(Frame::Kind::bracket, State::usingNames);
}

void QueryParser::usingName() {
  const auto tables = static_cast<std::uint32_t>(block().tables.size());
  const std::uint32_t left = frame().leftTables;
  for (const auto& [first, end] : {std::pair{0U, left}, std::pair{left, tables}}) {
    const QueryReference reference{tokens_.at().text, frame().block, first, end};
    part().references.push_back(reference);
    block().shared.push_back(reference);
  }
  take();
}

/// LATERAL before a table means no more than that it may use those before it.
void QueryParser::lateral() {
  if (tokens_.isWord("VIEW", 1)) return lateralView();
  begin();
  take();
}

/// LATERAL VIEW OUTER explode(a) t AS x, y
void QueryParser::lateralView() {
  begin();
  enter(State::viewAlias);
  take();
  take();
  if (tokens_.isWord("OUTER")) take();
  addTable(QueryTable::Kind::values);
  if (tokens_.at().kind != Token::Kind::call) return;
  take();
  take();
  const auto index = static_cast<std::uint32_t>(block().tables.size() - 1);
  push(Frame::Kind::bracket, State::bracketOperand).sink = {Sink::Kind::table, frame().block, index};
}

void QueryParser::viewAlias() {
  table().alias = tokens_.at().text;
  take();
}

void QueryParser::viewName() {
  table().columns.push_back(tokens_.at().text);
  take();
  if (tokens_.at().kind == Token::Kind::comma) take();
}

// PIVOT.

/// PIVOT (SUM(a) FOR b IN ([x], [y])), UNPIVOT INCLUDE NULLS (a FOR b IN (x, y))
void QueryParser::pivot() {
  const bool back = tokens_.isWord("UNPIVOT");
  // The names that UNPIVOT gives the columns are constants, in a table of their own before it.
  if (back) addTable(QueryTable::Kind::values);
  addTable(QueryTable::Kind::pivot);
  while (tokens_.isName()) take();
  if (!tokens_.isOpenBracket()) return;
  take();
  push(Frame::Kind::bracket, back ? State::unpivotValue : State::pivotValue);
}

/// A bracket inside that of PIVOT, which reads on as what it is found in.
void QueryParser::openPivot() {
  take();
  const State inside = before_ == State::pivotValue  ? State::pivotInput
                       : before_ == State::pivotIn   ? State::pivotNames
                       : before_ == State::unpivotIn ? State::unpivotInputs
                                                     : before_;
  push(Frame::Kind::bracket, inside);
}

void QueryParser::pivotInput() {
  table().inputs.references.push_back({tokens_.at().text, frame().block});
  take();
}

void QueryParser::pivotSuffix() {
  table().suffixes.push_back(tokens_.at().text);
  take();
}

void QueryParser::pivotName() {
  table().columns.push_back(tokens_.at().text);
  take();
}

void QueryParser::pivotAlias() {
  if (!table().columns.empty()) table().columns.back() = tokens_.at().text;
  take();
}

void QueryParser::unpivotValue() {
  table().columns.push_back(tokens_.at().text);
  take();
}

void QueryParser::unpivotName() {
  auto& tables = block().tables;
  tables[tables.size() - 2].columns.push_back(tokens_.at().text);
  take();
}

}  // namespace tav
