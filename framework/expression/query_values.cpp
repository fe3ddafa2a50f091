// Values: names, calls, brackets, and what dialects write between them.

#include "framework/expression/query_parser.h"
#include "framework/expression/words.h"

namespace tav {

// Names.

void QueryParser::name() {
  if (isNamedArgument() || qualifiedStar()) return;
  const std::string_view text = tokens_.at().text;
  // Variables, amounts of money and what a tool puts in are no columns.
  const bool isColumn = text.front() != '@' && text.front() != '$' && !isNoName();
  touch();
  if (isColumn) part().references.push_back({text, frame().block});
  if (isColumn && before_ == State::column) column().copy = true;
  take();
}

/// f(a => value): the name is that of the function's argument.
bool QueryParser::isNamedArgument() {
  const Token& sign = tokens_.at(1);
  if (sign.op != Op::equal || tokens_.at(2).op != Op::greater || tokens_.at(2).begin != sign.end)
    return false;
  for (int i = 0; i < 3; ++i) touchAndTake();
  enter(operandOf(before_));
  return true;
}

/// A word among the arguments of a function: EXTRACT(YEAR FROM a), TRIM(BOTH FROM a), DATE_TRUNC(a, MONTH)
bool QueryParser::isNoName() {
  const Token& token = tokens_.at();
  if (!token.bare) return false;
  if (frame().arguments == Arguments::partLast)
    return tokens_.at(1).kind == Token::Kind::closeBracket &&
           (isDatePart(token.text) || isTypeWord(token.text));
  if (frame().arguments != Arguments::withFrom) return false;
  const bool side = tokens_.isWord("BOTH") || tokens_.isWord("LEADING") || tokens_.isWord("TRAILING");
  if (!side) return isDatePart(token.text) && tokens_.isWord("FROM", 1);
  if (!tokens_.isWord("FROM", 1)) enter(operandOf(before_));
  return true;
}

/// A word that means something elsewhere may be the name of a function too.
void QueryParser::nameOrCall() {
  if (tokens_.at().kind == Token::Kind::call)
    call();
  else
    name();
}

void QueryParser::unexpectedName() {
  fail("an operator");
  enter(operatorOf(before_));
  nameOrCall();
}

/// Behind a value between brackets stand the words of many functions.
void QueryParser::unexpectedInBracket() {
  const Token& token = tokens_.at();
  if (tokens_.isWord("RETURNING")) {
    enter(State::type);
    return take();
  }
  if (token.bare && isArgumentWord(token.text)) {
    enter(operandOf(before_));
    return take();
  }
  if (token.bare && isDatePart(token.text)) return take();  // INTERVAL (a + b) DAY
  unexpectedName();
}

void QueryParser::windowName() {
  if (tokens_.at().bare && isWindowWord(tokens_.at().text)) {
    enter(State::windowOperand);
    return take();
  }
  if (before_ == State::windowOperator) return unexpectedName();
  nameOrCall();
}

// Calls and brackets.

/// a (FORMAT '9.99'), a (TITLE 'x'), a (NAMED b): how a value is shown, which looks like a call.
bool QueryParser::shown() {
  const bool format = tokens_.isWord("FORMAT", 2) || tokens_.isWord("TITLE", 2);
  const bool named = tokens_.isWord("NAMED", 2) && tokens_.isName(3);
  if (!named && !(format && tokens_.at(3).kind == Token::Kind::string)) return false;
  name();
  if (named && frame().sink.kind == Sink::Kind::column) column().name = tokens_.at(2).text;
  skipBrackets(&QueryParser::touchAndTake);
  return true;
}

void QueryParser::call() {
  if (shown()) return;
  const Token& token = tokens_.at();
  const std::string_view function = token.text.substr(token.lastPart);
  if (token.parts > 1 && isValueMethod(function))
    part().references.push_back({token.qualifier(), frame().block});
  touchAndTake();
  openBracket();
  if (frame().kind == Frame::Kind::bracket) readArguments(function);
}

/// The bracket of a function was opened, some of whose arguments are words.
void QueryParser::readArguments(std::string_view function) {
  if (isFromFunction(function)) frame().arguments = Arguments::withFrom;
  if (takesPartLast(function)) frame().arguments = Arguments::partLast;
  const Token& first = tokens_.at();
  // Elsewhere functions of these names begin with a value: DATEDIFF(a, b), CONVERT(a, CHAR)
  const bool word = first.bare && (isTypeWord(first.text) || isDatePart(first.text));
  if (word && takesWordFirst(function)) enter(State::type);
}

void QueryParser::openBracket() {
  openValues(false);
}

/// Opens a bracket among values. `rowsOnly`: the values of a sub-query do not matter.
void QueryParser::openValues(bool rowsOnly) {
  const bool isQuery = tokens_.startsQuery(1);
  touchAndTake();
  if (!isQuery) {
    push(Frame::Kind::bracket, State::bracketOperand);
    return;
  }
  const std::uint32_t id = addQuery(frame().query);
  if (!rowsOnly) part().queries.push_back(id);
  frame().nested = id;
  if (before_ == State::bracketOperand) enter(State::bracketQuery);
  pushQuery(id);
}

void QueryParser::openCase() {
  touchAndTake();
  push(Frame::Kind::caseOf, State::caseOperand);
}

void QueryParser::closeCase() {
  closeFrame();
  touchAndTake();
}

/// A bracket is closed around a CASE that is not.
void QueryParser::leaveCase() {
  fail("END");
  closeFrame();
}

void QueryParser::exists() {
  touchAndTake();
  if (tokens_.isOpenBracket())
    openValues(true);
  else
    enter(before_);
}

// What follows a value.

/// OVER (...), OVER w, WITHIN GROUP (...), FILTER (WHERE ...), KEEP (DENSE_RANK FIRST ORDER BY ...)
void QueryParser::over() {
  const bool filter = tokens_.isWord("FILTER");
  const bool keep = tokens_.isWord("KEEP");
  touchAndTake();
  if (tokens_.isWord("GROUP")) touchAndTake();
  if (!tokens_.isOpenBracket()) return touchAndTake();
  touchAndTake();
  push(Frame::Kind::bracket, filter ? State::bracketOperand : State::windowOperand);
  if (filter && tokens_.isWord("WHERE")) take();
  for (int words = 0; keep && words < 2 && tokens_.isName(); ++words) take();
}

void QueryParser::collate() {
  touchAndTake();
  touchAndTake();
}

/// a AT TIME ZONE 'UTC'
void QueryParser::zone() {
  take();
  if (tokens_.isWord("LOCAL")) {
    enter(operatorOf(before_));
    return take();
  }
  take();
  if (tokens_.isWord("ZONE")) take();
}

/// INTERVAL '1' DAY, INTERVAL n MONTH, INTERVAL '1-2' YEAR TO MONTH
void QueryParser::interval() {
  touchAndTake();
  if (tokens_.isName())
    name();
  else if (tokens_.at().kind == Token::Kind::string || tokens_.at().kind == Token::Kind::number)
    value();
  else
    return;
  enter(operatorOf(before_));
  while (tokens_.at().bare && (isDatePart(tokens_.at().text) || tokens_.isWord("TO"))) {
    touchAndTake();
    skipBrackets(&QueryParser::touchAndTake);
  }
}

/// :name, &name, &&name
void QueryParser::parameter() {
  const std::size_t end = tokens_.at().end;
  touchAndTake();
  if (tokens_.at().op == Op::bitAnd && tokens_.at().begin == end) touchAndTake();
  if (tokens_.isName() || tokens_.at().kind == Token::Kind::number) return touchAndTake();
  enter(operandOf(before_));
}

/// a:b.c, a place inside a value
void QueryParser::path() {
  touchAndTake();
  if (tokens_.isName()) touchAndTake();
}

/// a::numeric(10, 2), geography::Point(a, b, 4326)
void QueryParser::castTo() {
  std::vector<QueryReference>& references = part().references;
  const bool method = tokens_.at(2).kind == Token::Kind::call && !references.empty() &&
                      isTypeOfMethods(references.back().name);
  touchAndTake();
  touchAndTake();
  if (!method) return typeName();
  references.pop_back();
  enter(operandOf(before_));
}

void QueryParser::typeName() {
  if (!tokens_.isName()) return;
  touchAndTake();
  skipBrackets(&QueryParser::touchAndTake);
  for (;;) {
    const bool zone = (tokens_.isWord("WITH") || tokens_.isWord("WITHOUT")) && tokens_.isWord("TIME", 1);
    if (zone) touchAndTake();
    if (!zone && !(tokens_.at().bare && isTypeTail(tokens_.at().text))) return;
    touchAndTake();
    skipBrackets(&QueryParser::touchAndTake);
  }
}

/// ASC, NULLS LAST, IGNORE NULLS
void QueryParser::direction() {
  const bool two = !tokens_.isWord("ASC") && !tokens_.isWord("DESC");
  take();
  if (two) take();
}

/// TRIM(a FROM b); elsewhere a clause begins, and a bracket was left open.
void QueryParser::fromInBracket() {
  if (frame().arguments != Arguments::withFrom) {
    enter(before_);
    return recover();
  }
  take();
}

}  // namespace tav
