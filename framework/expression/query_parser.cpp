#include "framework/expression/query_parser.h"

#include "framework/expression/parser.h"
#include "framework/expression/words.h"

namespace tav {

QueryParser::QueryParser(Query& query, std::string_view text) : query_(query), tokens_(text, query.pieces) {
  query_.source = text;
}

void QueryParser::run() {
  startStatement();
  while (tokens_.sign() != Sign::end) step();
  closeAll();
  finishStatement();
  const ExpressionFault& fault = tokens_.fault();
  if (fault && fault.offset <= query_.fault.offset) query_.fault = fault;
  if (query_.main == kNoQuery) fail("SELECT");
}

void QueryParser::step() {
  before_ = frame().state;
  const Transition& transition = transitionOf(before_, tokens_.sign());
  switch (transition.next) {
    case State::stay:
      break;
    case State::toOperand:
      enter(operandOf(before_));
      break;
    case State::toOperator:
      enter(operatorOf(before_));
      break;
    default:
      enter(transition.next);
  }
  (this->*transition.action)();
}

void QueryParser::touchAndTake() {
  touch();
  take();
}

void QueryParser::fail(std::string_view expected) {
  const std::size_t offset = tokens_.at().begin;
  if (offset < query_.fault.offset) query_.fault = {offset, expected};
}

QueryPart& QueryParser::part() {
  const Sink sink = frame().sink;
  switch (sink.kind) {
    case Sink::Kind::column:
      return query_.blocks[sink.block].columns[sink.index];
    case Sink::Kind::condition:
      return query_.conditions[sink.index];
    case Sink::Kind::table:
      return query_.blocks[sink.block].tables[sink.index].inputs;
    default:
      return query_.others;
  }
}

/// Makes the token at hand part of the text of the column or condition that is being read. What stands
/// between brackets becomes part of it when the bracket is closed; a condition inside another one has no text
/// of its own.
void QueryParser::touch() {
  const Frame& top = frame();
  if (!inClauses()) return;
  const bool ofColumn = top.sink.kind == Sink::Kind::column;
  if (!ofColumn && (top.sink.kind != Sink::Kind::condition || top.outerCondition != kNoQuery)) return;
  QueryPart& whole = part();
  if (whole.end == 0) whole.begin = tokens_.at().begin;
  whole.end = tokens_.at().end;
  if (ofColumn) column().copy = false;
}

/// Opens a bracket behind the token that was taken last. It begins as part of what is around it.
QueryParser::Frame& QueryParser::push(Frame::Kind kind, State state) {
  if (frames_.size() == kMaxExpressionDepth + 1) fail("at most 1,000 levels");
  Frame made = frame();
  made.kind = kind;
  made.state = state;
  made.arguments = Arguments::plain;
  made.nested = kNoQuery;
  made.renamed = kNoQuery;
  return frames_.emplace_back(made);
}

/// Opens a bracket that holds a query of its own.
QueryParser::Frame& QueryParser::pushQuery(std::uint32_t id) {
  const std::uint32_t around = frame().block;
  const Sink sink = frame().sink;
  Frame& made = push(Frame::Kind::query, State::statement);
  made.query = id;
  made.block = kNoQuery;
  made.parentBlock = around;
  made.excepted = made.hidden = false;
  made.sink = {};
  // Conditions of a query that is part of a condition belong to that one.
  if (sink.kind == Sink::Kind::condition) made.outerCondition = sink.index;
  return made;
}

void QueryParser::closeFrame() {
  if (inClauses()) endClause(frame().state);
  frames_.pop_back();
}

/// Gives up on brackets that should have been closed before the token at hand.
void QueryParser::closeToClauses() {
  while (!inClauses()) {
    fail(frame().kind == Frame::Kind::caseOf ? "END" : "\")\"");
    closeFrame();
    const Sink::Kind sink = frame().sink.kind;
    if (inClauses() && (sink == Sink::Kind::column || sink == Sink::Kind::condition))
      part().end = tokens_.lastEnd();
  }
}

void QueryParser::closeAll() {
  closeToClauses();
  while (frames_.size() > 1) {
    fail("\")\"");
    closeFrame();
  }
  endClause(frame().state);
}

/// Passes over what stands between brackets, if they come next; `each` takes a token.
void QueryParser::skipBrackets(Action each) {
  if (!tokens_.isOpenBracket()) return;
  std::size_t depth = 0;
  while (tokens_.at().kind != Token::Kind::end) {
    if (tokens_.isOpenBracket()) ++depth;
    if (tokens_.at().kind == Token::Kind::closeBracket) --depth;
    (this->*each)();
    if (depth == 0) return;
  }
  fail("\")\"");
}

// What any state may meet.

void QueryParser::unknown() {
  fail("a value");
  take();
}

/// {fn NOW()}, {d '2024-01-31'}, {oj a LEFT OUTER JOIN b ON ...}: the braces and their word mean nothing.
void QueryParser::brace() {
  take();
  const bool bracket = tokens_.isOpenBracket(1);
  const bool string = tokens_.at(1).kind == Token::Kind::string;
  const char following = bracket             ? '('
                         : string            ? '\''
                         : tokens_.isName(1) ? tokens_.at(1).text.front()
                                             : '\0';
  const Token& word = tokens_.at();
  if (word.bare && (isEscapeWord(word.text, following) || isWord(word.text, "OJ"))) take();
}

void QueryParser::close() {
  if (frames_.size() == 1) {
    fail("\"(\" before it");
    return take();
  }
  closeFrame();
  touchAndTake();
}

/// A word that begins a clause shows that a bracket before it was left open.
void QueryParser::recover() {
  closeToClauses();
}

void QueryParser::openIgnored() {
  take();
  push(Frame::Kind::bracket, before_ == State::foreign ? State::foreign : State::ignored);
}

void QueryParser::endStatement() {
  closeAll();
  finishStatement();
  take();
  startStatement();
}

Query parseQuery(std::string_view text) {
  Query query;
  QueryParser(query, text).run();
  return query;
}

}  // namespace tav
