// What SQL writes in ways of its own: comments, strings, variables and operators.

#include <algorithm>
#include <array>

#include "framework/expression/lexer.h"
#include "framework/expression/words.h"

namespace tav {

namespace {

// What may stand right before the quote of a string: national, escaped, binary, hexadecimal, raw, Unicode,
// and the two of strings with a delimiter of their own.
constexpr std::array<std::string_view, 8> kStringPrefixes{"N", "E", "B", "X", "R", "U&", "Q", "NQ"};

/// The length of the prefix of the string that `text` begins with; npos when no string begins.
std::size_t stringPrefixLength(std::string_view text) noexcept {
  const std::size_t quote = text.substr(0, 3).find('\'');
  if (quote == 0 || quote == text.npos) return quote;
  const bool known =
      std::any_of(kStringPrefixes.begin(), kStringPrefixes.end(),
                  [&](std::string_view prefix) { return isWord(text.substr(0, quote), prefix); });
  return known ? quote : text.npos;
}

char closingDelimiter(char open) noexcept {
  switch (open) {
    case '[':
      return ']';
    case '(':
      return ')';
    case '{':
      return '}';
    case '<':
      return '>';
    default:
      return open;
  }
}

}  // namespace

/// Comments nest in Transact-SQL and PostgreSQL, elsewhere they end at the first "*/". One that is left open
/// by nesting shows that the text is of the second kind; that is found out once, so that a text of many such
/// comments is not read to its end for each of them.
std::size_t Lexer::skipNestedComment(std::size_t place) noexcept {
  std::size_t depth = 0;
  for (; place < source_.size(); ++place) {
    if (source_[place] == '/' && at(place + 1) == '*') {
      ++depth;
      ++place;
    } else if (source_[place] == '*' && at(place + 1) == '/') {
      ++place;
      if (--depth == 0) return place + 1;
    }
  }
  return kNeverClosed;
}

/// The last character of `${name}`, which tools put into names before they send a query; else `place`.
std::size_t Lexer::endOfVariable(std::size_t place) const noexcept {
  if (language_ != ExpressionLanguage::sql || at(place + 1) != '{') return place;
  const std::size_t end = source_.find_first_of("{}\r\n'\"", place + 2);
  return at(end) == '}' ? end : place;
}

/// E'it\'s'
std::size_t Lexer::endOfEscaped(std::size_t place) const noexcept {
  for (; place < source_.size(); ++place) {
    if (source_[place] == '\\') {
      ++place;
    } else if (source_[place] == '\'') {
      if (at(place + 1) != '\'') return place + 1;
      ++place;
    }
  }
  return kNeverClosed;
}

/// q'[it's]', q'!it's!'
std::size_t Lexer::endOfDelimited(std::size_t place) const noexcept {
  if (place >= source_.size()) return kNeverClosed;
  const char end[] = {closingDelimiter(source_[place]), '\''};
  const std::size_t found = source_.find(std::string_view(end, 2), place + 1);
  return found == source_.npos ? kNeverClosed : found + 2;
}

/// The end of `$$it's$$` or `$tag$it's$tag$`; `place` when no such string begins.
std::size_t Lexer::endOfDollarQuoted(std::size_t place) const noexcept {
  std::size_t tag = place + 1;
  while (startsWord(tag) && at(tag) != '$') ++tag;
  if (at(place) != '$' || at(tag) != '$') return place;
  const std::string_view mark = source_.substr(place, tag + 1 - place);
  const std::size_t found = source_.find(mark, tag + 1);
  return found == source_.npos ? kNeverClosed : found + mark.size();
}

bool Lexer::startsSqlString(std::size_t place) const noexcept {
  if (at(place) == '$') return endOfDollarQuoted(place) != place;
  return stringPrefixLength(source_.substr(place)) != source_.npos;
}

std::size_t Lexer::endOfSqlString(std::size_t place) const noexcept {
  if (at(place) == '$') return endOfDollarQuoted(place);
  const std::size_t prefix = stringPrefixLength(source_.substr(place));
  const std::size_t text = place + prefix + 1;
  if (prefix > 0 && foldCase(source_[place + prefix - 1]) == 'q') return endOfDelimited(text);
  if (prefix > 0 && foldCase(source_[place]) == 'e') return endOfEscaped(text);
  return endOfQuoted(text, '\'');
}

Token Lexer::sqlString() {
  const std::size_t end = endOfSqlString(place_);
  if (end != kNeverClosed) return finish(Token::Kind::string, end);
  fail(place_, "a closing quote");
  return finish(Token::Kind::unknown, source_.size());
}

Token Lexer::sqlSymbol() {
  const char following = at(place_ + 1);
  switch (at(place_)) {
    case '%':
      return operation(Op::remainder, 1);
    case '&':
      return operation(Op::bitAnd, 1);
    case '|':
      return following == '|' ? operation(Op::concatenate, 2) : operation(Op::bitOr, 1);
    case '~':
      return operation(Op::complement, 1);
    case '!':
      if (following == '=') return operation(Op::unequal, 2);
      if (following == '<') return operation(Op::greaterEqual, 2);
      if (following == '>') return operation(Op::lessEqual, 2);
      break;
    default:
      break;
  }
  return finish(Token::Kind::unknown, place_ + 1);
}

}  // namespace tav
