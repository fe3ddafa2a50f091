#include "framework/expression/lexer.h"

#include <algorithm>
#include <array>

#include "framework/expression/words.h"

namespace tav {

namespace {

enum class CharClass : std::uint8_t { other, blank, word, digit, high };

constexpr std::array<CharClass, 256> classify() {
  std::array<CharClass, 256> classes{};
  for (std::size_t c = 0x80; c < 0x100; ++c) classes[c] = CharClass::high;
  for (std::size_t c = '0'; c <= '9'; ++c) classes[c] = CharClass::digit;
  for (std::size_t i = 0; i < 26; ++i) classes['A' + i] = classes['a' + i] = CharClass::word;
  for (const char c : {'_', '$', '@', '#'}) classes[static_cast<unsigned char>(c)] = CharClass::word;
  for (const char c : {' ', '\t', '\n', '\v', '\f', '\r'})
    classes[static_cast<unsigned char>(c)] = CharClass::blank;
  return classes;
}
constexpr std::array<CharClass, 256> kClasses = classify();

CharClass classOf(char c) noexcept {
  return kClasses[static_cast<unsigned char>(c)];
}

/// The length of the blank above U+007F that `text` begins with, 0 when it begins with none: U+00A0,
/// U+2000 to U+200B, U+3000, U+FEFF.
std::size_t highBlankLength(std::string_view text) noexcept {
  if (text.starts_with("\xC2\xA0")) return 2;
  if (text.starts_with("\xE3\x80\x80") || text.starts_with("\xEF\xBB\xBF")) return 3;
  if (!text.starts_with("\xE2\x80") || text.size() < 3) return 0;
  const auto last = static_cast<unsigned char>(text[2]);
  return last >= 0x80U && last <= 0x8BU ? 3 : 0;
}

struct Word {
  std::string_view text;
  Token::Kind kind;
  Op op = Op::none;
};

// Shortest first.
constexpr std::array kWords{Word{"AS", Token::Kind::operation, Op::as},
                            Word{"IS", Token::Kind::operation, Op::is},
                            Word{"OR", Token::Kind::operation, Op::logicalOr},
                            Word{"AND", Token::Kind::operation, Op::logicalAnd},
                            Word{"END", Token::Kind::endWord},
                            Word{"NOT", Token::Kind::operation, Op::logicalNot},
                            Word{"XOR", Token::Kind::operation, Op::logicalXor},
                            Word{"CASE", Token::Kind::caseWord},
                            Word{"ELSE", Token::Kind::elseWord},
                            Word{"NULL", Token::Kind::constant},
                            Word{"THEN", Token::Kind::thenWord},
                            Word{"TRUE", Token::Kind::constant},
                            Word{"WHEN", Token::Kind::whenWord},
                            Word{"FALSE", Token::Kind::constant},
                            Word{"DISTINCT", Token::Kind::operation, Op::distinct},
                            Word{"EXISTING", Token::Kind::operation, Op::existing}};

const Word* findWord(std::string_view text) noexcept {
  if (text.size() < kWords.front().text.size() || text.size() > kWords.back().text.size()) return nullptr;
  for (const Word& word : kWords)
    if (isWord(text, word.text)) return &word;
  return nullptr;
}

}  // namespace

Lexer::Lexer(std::string_view source, ExpressionLanguage language, PieceBuffer& pieces)
    : source_(source), language_(language), pieces_(pieces), place_(skipBlanks(0)) {}

std::size_t Lexer::skipLine(std::size_t place) const noexcept {
  const std::size_t end = source_.find_first_of("\r\n", place);
  return end == source_.npos ? source_.size() : end;
}

std::size_t Lexer::skipBlockComment(std::size_t place) noexcept {
  if (language_ == ExpressionLanguage::sql && !flatComments_) {
    const std::size_t nested = skipNestedComment(place);
    if (nested != kNeverClosed) return nested;
    flatComments_ = true;
  }
  const std::size_t end = source_.find("*/", place + 2);
  if (end != source_.npos) return end + 2;
  fail(place, "\"*/\"");
  return source_.size();
}

std::size_t Lexer::skipBlanks(std::size_t place) noexcept {
  for (;;) {
    const char c = at(place);
    const CharClass kind = classOf(c);
    if (kind == CharClass::blank) {
      ++place;
    } else if (kind == CharClass::high) {
      const std::size_t length = highBlankLength(source_.substr(place, 3));
      if (length == 0) return place;
      place += length;
    } else if (c == '/' && at(place + 1) == '*') {
      place = skipBlockComment(place);
    } else if ((c == '-' || (c == '/' && language_ == ExpressionLanguage::mdx)) && at(place + 1) == c) {
      place = skipLine(place);
    } else {
      return place;
    }
  }
}

std::size_t Lexer::endOfWord(std::size_t place) const noexcept {
  for (; place < source_.size(); ++place) {
    const CharClass kind = classOf(source_[place]);
    if (kind == CharClass::word || kind == CharClass::digit) {
      if (source_[place] == '$') place = endOfVariable(place);
      continue;
    }
    if (kind != CharClass::high || highBlankLength(source_.substr(place, 3)) > 0) break;
  }
  return place;
}

std::size_t Lexer::endOfNumber(std::size_t place) const noexcept {
  const auto skipDigits = [&] {
    while (classOf(at(place)) == CharClass::digit) ++place;
  };
  const bool hexadecimal = at(place) == '0' && (at(place + 1) == 'x' || at(place + 1) == 'X');
  if (hexadecimal && language_ == ExpressionLanguage::sql) return endOfWord(place + 2);
  skipDigits();
  if (at(place) == '.') ++place;
  skipDigits();
  if (at(place) != 'e' && at(place) != 'E') return place;
  const std::size_t digits = at(place + 1) == '+' || at(place + 1) == '-' ? place + 2 : place + 1;
  if (classOf(at(digits)) != CharClass::digit) return place;
  place = digits;
  skipDigits();
  return place;
}

std::size_t Lexer::endOfQuoted(std::size_t place, char close) const noexcept {
  for (;;) {
    place = source_.find(close, place);
    if (place == source_.npos) return kNeverClosed;
    if (at(place + 1) != close) return place + 1;
    place += 2;
  }
}

bool Lexer::startsWord(std::size_t place) const noexcept {
  const CharClass kind = classOf(at(place));
  return kind == CharClass::word ||
         (kind == CharClass::high && highBlankLength(source_.substr(place, 3)) == 0);
}

bool Lexer::startsKey(std::size_t place) const noexcept {
  if (at(place) != '&') return false;
  return at(place + 1) == '[' || classOf(at(place + 1)) == CharClass::digit || startsWord(place + 1);
}

bool Lexer::startsPart(std::size_t place) const noexcept {
  const char c = at(place);
  const bool quote = (c == '"' || c == '`') && language_ == ExpressionLanguage::sql;
  return c == '[' || quote || startsWord(place) || startsKey(place);
}

std::size_t Lexer::endOfPart(std::size_t place) noexcept {
  const std::size_t name = at(place) == '&' ? place + 1 : place;
  const char open = at(name);
  if (open == '.') return place;  // db..table has an empty one
  if (open != '[' && open != '"' && open != '`') return endOfWord(name);
  const std::size_t end = endOfQuoted(name + 1, open == '[' ? ']' : open);
  if (end == kNeverClosed) fail(name, open == '[' ? "\"]\"" : "a closing quote");
  return end;
}

Token Lexer::finish(Token::Kind kind, std::size_t end) noexcept {
  Token token;
  token.kind = kind;
  token.begin = place_;
  token.end = end;
  token.text = source_.substr(place_, end - place_);
  place_ = skipBlanks(end);
  return token;
}

Token Lexer::operation(Op op, std::size_t length) noexcept {
  Token token = finish(Token::Kind::operation, place_ + length);
  token.op = op;
  return token;
}

Token Lexer::next(bool insideCase) {
  if (place_ >= source_.size() || source_[place_] == ';') {
    Token token;
    token.begin = token.end = place_;
    return token;
  }
  const char c = source_[place_];
  if (language_ == ExpressionLanguage::mdx && (c == '\'' || c == '"')) return quoted(c);
  if (language_ == ExpressionLanguage::sql && startsSqlString(place_)) return sqlString();
  const CharClass kind = classOf(c);
  if (kind == CharClass::digit || (c == '.' && classOf(at(place_ + 1)) == CharClass::digit))
    return finish(Token::Kind::number, endOfNumber(place_));
  // A key begins a reference in MDX alone: in SQL the sign is an operator.
  if (startsPart(place_) && (c != '&' || language_ == ExpressionLanguage::mdx)) return reference(insideCase);
  return symbol();
}

Token Lexer::quoted(char quote) {
  const std::size_t end = endOfQuoted(place_ + 1, quote);
  if (end != kNeverClosed) return finish(Token::Kind::string, end);
  fail(place_, "a closing quote");
  return finish(Token::Kind::unknown, source_.size());
}

std::size_t Lexer::findNextPart(std::size_t from, std::size_t to, bool& sameKey) noexcept {
  place_ = skipBlanks(to);
  // Several keys in a row are one part. In SQL a blank before the sign makes it an operator.
  sameKey = at(from) == '&' && startsKey(place_) && (place_ == to || language_ == ExpressionLanguage::mdx);
  if (sameKey) return place_;
  if (at(place_) != '.' || classOf(at(place_ + 1)) == CharClass::digit) return kNeverClosed;
  const std::size_t following = skipBlanks(place_ + 1);
  if (startsPart(following)) return following;
  // Of server.database.schema.table the two in the middle may be empty, so three dots are the most.
  std::size_t name = following;
  for (int empty = 0; empty < 2 && language_ == ExpressionLanguage::sql && at(name) == '.'; ++empty)
    name = skipBlanks(name + 1);
  return name != following && startsPart(name) ? following : kNeverClosed;
}

Token Lexer::reference(bool insideCase) {
  Token token;
  token.begin = token.end = place_;
  bool laidOut = false;  // otherwise the text stands in the source as it is
  bool sameKey = false;
  bool lastIsWord = false;
  Token named = token;  // as far as its last part that is not empty, and the size of that text
  std::size_t size = 0;
  for (std::size_t from = place_; from != kNeverClosed;) {
    const std::size_t to = endOfPart(from);
    if (to == kNeverClosed) {
      place_ = source_.size();
      token = named;
      break;
    }
    if (!sameKey) {
      if (laidOut) pieces_.append(".");
      token.lastPart = static_cast<std::uint32_t>(laidOut ? pieces_.piece().size() : from - token.begin);
      ++token.parts;
    }
    if (laidOut) pieces_.append(source_.substr(from, to - from));
    token.end = to;
    if (to > from) {
      lastIsWord = startsWord(from);
      named = token;
      size = laidOut ? pieces_.piece().size() : to - token.begin;
    }
    std::size_t following = findNextPart(from, to, sameKey);
    if (insideCase && token.parts == 1 && lastIsWord && isWord(source_.substr(from, to - from), "END"))
      following = kNeverClosed;
    if (!laidOut && following != kNeverClosed && following != to + (sameKey ? 0 : 1)) {
      laidOut = true;
      pieces_.startPiece(source_.size());
      pieces_.append(source_.substr(token.begin, to - token.begin));
    }
    from = following;
  }
  token.text = laidOut ? pieces_.piece().substr(0, size) : source_.substr(token.begin, size);
  return closeReference(token, lastIsWord);
}

Token Lexer::closeReference(Token token, bool lastIsWord) {
  token.bare = token.parts == 1 && lastIsWord;
  token.kind = token.parts == 0 ? Token::Kind::unknown : Token::Kind::reference;
  if (token.bare) {
    const Word* word = findWord(token.text);
    // MDX has a function of this name too.
    const bool function =
        word && word->op == Op::distinct && language_ == ExpressionLanguage::mdx && peek() == '(';
    if (word && !function) {
      token.kind = word->kind;
      token.op = word->op;
      return token;
    }
  }
  if (peek() == '!' && takeLibraryFunction(token)) return token;
  if (lastIsWord && peek() == '(') token.kind = Token::Kind::call;
  return token;
}

bool Lexer::takeLibraryFunction(Token& token) noexcept {
  const std::size_t begin = skipBlanks(place_ + 1);
  if (!startsWord(begin)) return false;
  const std::size_t end = endOfWord(begin);
  const std::size_t following = skipBlanks(end);
  if (at(following) != '(') return false;
  token.kind = Token::Kind::call;
  token.bare = false;
  token.end = end;
  token.text = source_.substr(begin, end - begin);
  token.parts = 1;
  token.lastPart = 0;
  place_ = following;
  return true;
}

Token Lexer::symbol() {
  using Kind = Token::Kind;
  const char following = at(place_ + 1);
  switch (at(place_)) {
    case '(':
      return finish(Kind::openBracket, place_ + 1);
    case ')':
      return finish(Kind::closeBracket, place_ + 1);
    case '{':
      return finish(Kind::openBrace, place_ + 1);
    case '}':
      return finish(Kind::closeBrace, place_ + 1);
    case ',':
      return finish(Kind::comma, place_ + 1);
    case '.':
      return finish(Kind::dot, place_ + 1);
    case '+':
      return operation(Op::plus, 1);
    case '-':
      return operation(Op::minus, 1);
    case '*':
      return operation(Op::times, 1);
    case '/':
      return operation(Op::divide, 1);
    case '=':
      return operation(Op::equal, 1);
    case '<':
      if (following == '>') return operation(Op::unequal, 2);
      return following == '=' ? operation(Op::lessEqual, 2) : operation(Op::less, 1);
    case '>':
      return following == '=' ? operation(Op::greaterEqual, 2) : operation(Op::greater, 1);
    case ':':
      return operation(Op::range, 1);
    case '^':
      return operation(language_ == ExpressionLanguage::mdx ? Op::power : Op::bitXor, 1);
    default:
      return language_ == ExpressionLanguage::sql ? sqlSymbol() : finish(Kind::unknown, place_ + 1);
  }
}

TAVString placeInText(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::string_view inLine = before.substr(before.rfind('\n') + 1);
  const auto column = std::count_if(inLine.begin(), inLine.end(),
                                    [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
  return "line " + std::to_string(line) + ", column " + std::to_string(column + 1);
}

}  // namespace tav
