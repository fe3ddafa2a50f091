#include "framework/expression/query_tokens.h"

#include "framework/expression/words.h"
#include "framework/std/dotted_name.h"

namespace tav {

QueryTokens::QueryTokens(std::string_view text, PieceBuffer& pieces)
    : text_(text), pieces_(pieces), lexer_(std::make_unique<Lexer>(text, ExpressionLanguage::sql, pieces)) {}

const Token& QueryTokens::at(std::size_t count) {
  while (ahead_.size() <= count + kOuterJoinMark) read();
  return ahead_[count].token;
}

void QueryTokens::take() {
  lastEnd_ = at().end;
  ahead_.pop_front();
}

/// The lexer stops at semicolons: a new one goes on behind it.
Token QueryTokens::readRaw() {
  Token token = lexer_->next(false);
  token.begin += base_;
  token.end += base_;
  const ExpressionFault& fault = lexer_->fault();
  if (fault && base_ + fault.offset <= fault_.offset) fault_ = {base_ + fault.offset, fault.expected};
  if (token.kind == Token::Kind::end && token.begin < text_.size()) {
    ++token.end;
    base_ = token.end;
    lexer_ = std::make_unique<Lexer>(text_.substr(base_), ExpressionLanguage::sql, pieces_);
  }
  return token;
}

void QueryTokens::read() {
  const Token token = readRaw();
  ahead_.push_back({token, isIndex(token)});
  if (token.kind == Token::Kind::closeBracket) joinOuterJoinMark();
  readEnd_ = ahead_.back().token.end;
  readKind_ = ahead_.back().token.kind;
}

/// Oracle marks the side of an outer join that may be missing: a.k = b.k(+). The mark is no part of the name,
/// and the name is none of a function.
void QueryTokens::joinOuterJoinMark() {
  if (ahead_.size() <= kOuterJoinMark) return;
  const std::size_t name = ahead_.size() - 1 - kOuterJoinMark;
  if (ahead_[name + 1].token.kind != Token::Kind::openBracket || ahead_[name + 2].token.op != Op::plus)
    return;
  Token& token = ahead_[name].token;
  if (token.kind != Token::Kind::call && token.kind != Token::Kind::reference) return;
  token.kind = Token::Kind::reference;
  token.end = ahead_.back().token.end;
  ahead_.resize(name + 1);
}

/// Whether a reference is the place in an array or a key, right behind a value: a[0], a['key'],
/// a[OFFSET(0)]. All that it cannot be told from is an alias in brackets, which would look odd.
bool QueryTokens::isIndex(const Token& token) const noexcept {
  const bool behindValue = readKind_ == Token::Kind::reference || readKind_ == Token::Kind::closeBracket;
  if (!behindValue || token.begin != readEnd_ || !token.text.starts_with('[')) return false;
  const std::string_view part = token.text.substr(0, namePartLength(token.text));
  const std::string_view inner = part.substr(1, part.size() - 2);
  const bool key = inner.starts_with('\'') || inner.starts_with('"') || inner.ends_with(')');
  return key || inner.find_first_not_of("0123456789") == inner.npos;
}

bool QueryTokens::isWord(std::string_view upper, std::size_t count) {
  const Token& token = at(count);
  return token.bare && tav::isWord(token.text, upper);
}

bool QueryTokens::isName(std::size_t count) {
  return at(count).kind == Token::Kind::reference || at(count).kind == Token::Kind::call;
}

bool QueryTokens::startsQuery(std::size_t count) {
  const Token& token = at(count);
  if (!token.bare || !isName(count)) return false;
  const QuerySign sign = signOfWord(token.text);
  const bool named =
      isName(count + 1) || at(count + 1).kind == Token::Kind::number || at(count + 1).op == Op::times;
  if (sign == QuerySign::shortSelect) return named;
  return sign == QuerySign::select || sign == QuerySign::with || sign == QuerySign::values;
}

bool QueryTokens::startsCount(std::size_t count) {
  const Token& token = at(count);
  if (token.kind == Token::Kind::number || token.kind == Token::Kind::openBracket) return true;
  if (token.kind == Token::Kind::reference && (token.text.front() == '@' || token.text.front() == '$'))
    return true;
  return token.text == "?" || token.op == Op::range || token.op == Op::bitAnd || isWord("ALL", count);
}

QuerySign QueryTokens::signOf(std::size_t count) {
  switch (at(count).kind) {
    case Token::Kind::end:
      return at(count).begin < text_.size() ? QuerySign::semicolon : QuerySign::end;
    case Token::Kind::openBracket:
      return QuerySign::openBracket;
    case Token::Kind::closeBracket:
      return QuerySign::closeBracket;
    case Token::Kind::openBrace:
      return QuerySign::openBrace;
    case Token::Kind::closeBrace:
      return QuerySign::closeBrace;
    case Token::Kind::comma:
      return QuerySign::comma;
    case Token::Kind::dot:
      return QuerySign::dot;
    case Token::Kind::reference:
    case Token::Kind::call:
      return signOfName(count);
    case Token::Kind::operation:
      return signOfOperation(count);
    case Token::Kind::constant:
    case Token::Kind::number:
      return QuerySign::literal;
    case Token::Kind::string:
      return QuerySign::string;
    case Token::Kind::caseWord:
      return QuerySign::caseWord;
    case Token::Kind::whenWord:
    case Token::Kind::thenWord:
    case Token::Kind::elseWord:
      return QuerySign::casePart;
    case Token::Kind::endWord:
      return QuerySign::endWord;
    default:
      return at(count).text == "?" ? QuerySign::question : QuerySign::unknown;
  }
}

QuerySign QueryTokens::signOfOperation(std::size_t count) {
  switch (at(count).op) {
    case Op::times:
      return QuerySign::times;
    case Op::equal:
      return QuerySign::equal;
    case Op::as:
      return QuerySign::as;
    case Op::distinct:
      return QuerySign::distinct;
    case Op::bitAnd:
      return QuerySign::ampersand;
    case Op::range: {
      const Token& next = at(count + 1);
      return next.op == Op::range && next.begin == at(count).end ? QuerySign::cast : QuerySign::colon;
    }
    default:
      return QuerySign::operation;
  }
}

QuerySign QueryTokens::signOfName(std::size_t count) {
  const Token& token = at(count);
  if (ahead_[count].isIndex) return QuerySign::index;
  const QuerySign plain = token.kind == Token::Kind::call ? QuerySign::call : QuerySign::name;
  if (!token.bare) return plain;
  const QuerySign word = signOfWord(token.text);
  if (word == QuerySign::name) return plain;
  const QuerySign sign = signInContext(word, count);
  return sign == QuerySign::name ? plain : sign;
}

/// The words that mean several things.
QuerySign QueryTokens::signInContext(QuerySign word, std::size_t count) {
  // FIRST_VALUE(a) IGNORE NULLS, against IGNORE INDEX (i)
  if (isWord("IGNORE", count) && isWord("NULLS", count + 1)) return QuerySign::direction;
  return isMeant(word, count) ? word : QuerySign::name;
}

/// Whether a word that may also be a name is meant as the word.
bool QueryTokens::isMeant(QuerySign word, std::size_t count) {
  const std::size_t next = count + 1;
  const bool called = at(count).kind == Token::Kind::call;
  switch (word) {
    case QuerySign::joinKind:
      return !called && isJoinMeant(count);
    case QuerySign::literal:
    case QuerySign::statement:
    case QuerySign::insert:
      return !called;
    case QuerySign::tail:
      if (isWord("FETCH", count) && (isWord("FIRST", next) || isWord("NEXT", next))) return true;
      return isWord("FOR", count) || isWord("OPTION", count) || startsCount(next);
    case QuerySign::except:
      if (!isWord("MINUS", count)) return true;
      return startsQuery(next) || (called && startsQuery(next + 1)) || isWord("ALL", next);
    case QuerySign::connect:
      return isWord("CONNECT", count) ? isWord("BY", next) : isWord("START", count) && isWord("WITH", next);
    case QuerySign::window:
      return isName(next) && at(next + 1).op == Op::as;
    case QuerySign::pivot:
      return called || isWord("XML", next) || isWord("INCLUDE", next) || isWord("EXCLUDE", next);
    case QuerySign::hint:
      if (isWord("TABLESAMPLE", count)) return true;
      if (isWord("MATCH_RECOGNIZE", count) || isWord("PARTITION", count)) return called;
      return isWord("INDEX", next) || isWord("KEY", next);
    case QuerySign::over:
      return isWord("WITHIN", count) ? isWord("GROUP", next)
                                     : called || (isWord("OVER", count) && isName(next));
    case QuerySign::wordOperation:
      return isOperationMeant(count);
    case QuerySign::direction:
      if (isWord("RESPECT", count)) return isWord("NULLS", next);
      return !isWord("NULLS", count) || isWord("FIRST", next) || isWord("LAST", next);
    case QuerySign::zone:
      return isWord("TIME", next) || isWord("LOCAL", next);
    case QuerySign::typed: {
      // SELECT Date 'Order Date' gives a column a name.
      const std::string_view text = at(next).text;
      return at(next).kind == Token::Kind::string && text.size() > 1 && text[1] >= '0' && text[1] <= '9';
    }
    case QuerySign::interval:
      if (isName(next)) return at(next + 1).bare && isDatePart(at(next + 1).text);
      return at(next).kind == Token::Kind::string || startsCount(next);
    default:
      return true;
  }
}

bool QueryTokens::isJoinMeant(std::size_t count) {
  if (isWord("NATURAL", count)) {
    const QuerySign next = at(count + 1).bare ? signOfWord(at(count + 1).text) : QuerySign::name;
    return next == QuerySign::join || next == QuerySign::joinKind;
  }
  const bool rare = isWord("SEMI", count) || isWord("ANTI", count) || isWord("ASOF", count);
  return !rare || isWord("JOIN", count + 1);
}

bool QueryTokens::isOperationMeant(std::size_t count) {
  if (isWord("GROUPING", count)) return isWord("SETS", count + 1);
  if (!isWord("PRIOR", count) && !isWord("CONNECT_BY_ROOT", count)) return true;
  const Token& next = at(count + 1);
  return isName(count + 1) && (!next.bare || signOfWord(next.text) == QuerySign::name);
}

}  // namespace tav
