// Statements as a whole, the tables that they fill, and common table expressions.

#include "framework/expression/parser.h"
#include "framework/expression/query_parser.h"
#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"

namespace tav {

namespace {

/// Temporary tables and table variables are empty until the script fills them.
bool isTemporary(std::string_view name) {
  const std::string bare = unquotedPart(name);
  return bare.starts_with('#') || bare.starts_with('@');
}

}  // namespace

std::uint32_t QueryParser::addQuery(std::uint32_t parent) {
  query_.queries.emplace_back().parent = parent;
  return static_cast<std::uint32_t>(query_.queries.size() - 1);
}

/// Adds a SELECT or a row of values to the query at hand.
std::uint32_t QueryParser::addBlock() {
  Frame& top = frame();
  const auto id = static_cast<std::uint32_t>(query_.blocks.size());
  QueryBlock& made = query_.blocks.emplace_back();
  made.query = top.query;
  // What is nested too deep is cut off from the tables around it, or names would be looked for up a chain as
  // long as the text.
  made.parent = frames_.size() <= kMaxExpressionDepth ? top.parentBlock : kNoQuery;
  made.columns.emplace_back();
  if (!top.excepted && !top.hidden) query_.queries[top.query].blocks.push_back(id);
  return id;
}

void QueryParser::startStatement() {
  frames_.assign(1, Frame());
  frame().query = addQuery(kNoQuery);
  forgetTarget();
  lastName_ = {};
  filled_ = false;
}

/// The statement that is at its end may be the one that gives the result, and may have made a table.
void QueryParser::finishStatement() {
  const std::uint32_t id = frames_.front().query;
  const auto& blocks = query_.queries[id].blocks;
  if (blocks.empty()) return;
  const std::vector<QueryColumn>& columns = query_.blocks[blocks.front()].columns;
  const bool assigns = !columns.empty() && columns.front().name.starts_with('@');
  const bool gives = !assigns && target_.empty();
  if (query_.main == kNoQuery || (gives && !gives_)) {
    query_.main = id;
    gives_ = gives;
  }
  if (!filled_) return;
  std::vector<std::string_view>& names = made_[nameKey(target_)];
  if (!names.empty()) return;
  if (!targetColumns_.empty()) {
    names = targetColumns_;
    return;
  }
  for (const QueryColumn& each : columns) {
    if (each.star || each.name.empty()) return names.clear();
    names.push_back(each.name);
  }
}

/// A word that can only begin a statement: Transact-SQL needs no semicolon before it.
void QueryParser::nextStatement() {
  if (frames_.size() > 1) return touchAndTake();
  endClause(before_);
  finishStatement();
  startStatement();
}

void QueryParser::openQuery() {
  take();
  const Frame around = frame();
  Frame& made = push(Frame::Kind::query, State::statement);
  made.block = kNoQuery;
  made.hidden = around.hidden || around.excepted;
  made.excepted = false;
}

void QueryParser::needSelect() {
  fail("SELECT");
  take();
}

void QueryParser::startRows() {
  fillTarget();
  take();
}

/// Each row of VALUES is a SELECT without tables, so that rows are put together by place as by UNION.
void QueryParser::openRow() {
  take();
  const std::uint32_t id = addBlock();
  Frame& made = push(Frame::Kind::query, State::column);
  made.block = id;
  made.sink = {Sink::Kind::column, id, 0};
}

// The tables that statements fill.

void QueryParser::rememberName() {
  lastName_ = tokens_.at().text;
  take();
}

/// DECLARE @t TABLE (a int, b int)
void QueryParser::tableVariable() {
  const bool opens = tokens_.isOpenBracket(1);
  take();
  if (!opens || !lastName_.starts_with('@')) return;
  listNames(made_[nameKey(lastName_)]);
}

/// CREATE OR REPLACE TEMPORARY VIEW ...
void QueryParser::createdWord() {
  if (tokens_.isWord("VIEW")) enter(State::createdName);
  take();
}

/// CREATE TABLE IF NOT EXISTS t (a int), CREATE TABLE t AS SELECT ...
void QueryParser::createdTable() {
  target_ = tokens_.at().text;
  creates_ = true;
  const bool listed = tokens_.at().kind == Token::Kind::call;
  take();
  if (!listed) return;
  listNames(made_[nameKey(target_)]);
  // CREATE TABLE #t (a int) SELECT ...: two statements
  if (isTemporary(target_)) forgetTarget();
}

/// INSERT INTO #t (a, b) SELECT ...
void QueryParser::insertedTable() {
  if (tokens_.isWord("OVERWRITE")) {
    enter(State::inserted);
    return take();
  }
  target_ = tokens_.at().text;
  creates_ = false;
  const bool listed = tokens_.at().kind == Token::Kind::call;
  take();
  if (listed) listNames(targetColumns_);
}

/// INSERT #t EXEC p, INSERT #t VALUES (1): a SELECT behind it is a statement of its own.
void QueryParser::otherRows() {
  forgetTarget();
  take();
}

void QueryParser::forgetTarget() {
  target_ = {};
  targetColumns_.clear();
}

/// A SELECT begins: where the statement stores its rows, it is what the table is made of. A table that was
/// there before, with rows of its own, is read as a table of the database.
void QueryParser::fillTarget() {
  if (target_.empty() || filled_ || frames_.size() > 1) return;
  const auto made = made_.find(nameKey(target_));
  if (!creates_ && !isTemporary(target_) && made == made_.end()) return;
  filled_ = true;
  const auto& columns = targetColumns_.empty() && made != made_.end() ? made->second : targetColumns_;
  query_.temporaries.push_back({target_, frame().query, columns});
}

/// Reads the names of a list, whose bracket is at hand.
void QueryParser::listNames(std::vector<std::string_view>& names) {
  names_ = &names;
  take();
  push(Frame::Kind::bracket, State::names);
}

void QueryParser::newName() {
  names_->push_back(tokens_.at().text);
  take();
}

// WITH.

void QueryParser::expressionName() {
  if (tokens_.isWord("RECURSIVE") && tokens_.isName(1)) {
    enter(State::expression);
    return take();
  }
  auto& expressions = query_.queries[frame().query].expressions;
  expressions.push_back({tokens_.at().text, kNoQuery, {}});
  const bool listed = tokens_.at().kind == Token::Kind::call;
  take();
  if (listed) listNames(expressions.back().columns);
}

void QueryParser::openExpressionNames() {
  listNames(query_.queries[frame().query].expressions.back().columns);
}

void QueryParser::openExpression() {
  take();
  const std::uint32_t id = addQuery(frame().query);
  query_.queries[frame().query].expressions.back().query = id;
  Frame& made = pushQuery(id);
  // A common table expression sees no tables of the query around it.
  made.parentBlock = kNoQuery;
}

}  // namespace tav
