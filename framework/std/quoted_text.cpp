#include "framework/std/quoted_text.h"

#include <algorithm>

namespace tav {
namespace {

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kBehindValue = " \t\r\n,;)]}&|+";

}  // namespace

std::size_t QuotedText::skip(std::size_t i, std::string_view characters) const noexcept {
  return std::min(text_.find_first_not_of(characters, i), text_.size());
}

std::size_t QuotedText::endOfRun(std::size_t i) const noexcept {
  return std::min(text_.find_first_not_of(at(i), i), text_.size());
}

bool QuotedText::isPair(std::size_t begin, std::size_t quote) const {
  const std::size_t size = quote + 1 - begin;
  return text_.substr(quote + 1, size) == text_.substr(begin, size);
}

std::optional<Literal> QuotedText::literalAt(std::size_t i, bool json, char around) const {
  using Form = Literal::Form;
  if (at(i) == '{') return Literal{i + 1, json ? Form::nested : Form::braces, '}'};
  if (json && at(i) == '[') return Literal{i + 1, Form::nested, ']'};
  if (isIn(at(i), "Nn") && at(i + 1) == '\'') ++i;
  const std::size_t quote = skip(i, "\\");
  const char c = at(quote);
  if (!isQuote(c)) return std::nullopt;
  if (quote > i && isPair(i, quote)) {
    const std::size_t begin = 2 * quote + 2 - i;
    if (begin >= text_.size() || isIn(text_[begin], kBehindValue)) return std::nullopt;
    return Literal{begin, Form::escapedQuotes, c, quote - i, true};
  }
  if (quote > i) return Literal{quote + 1, Form::escapedQuotes, c, quote - i};
  const std::size_t end = endOfRun(i);
  const std::size_t count = end - i;
  const bool isEven = count % 2 == 0;
  const bool atEnd = end == text_.size() || isIn(text_[end], kBehindValue);
  if (c == around && ((!isEven && atEnd) || count == 4)) return std::nullopt;
  if (!isEven) return Literal{i + 1, json ? Form::escapedQuotes : Form::quotes, c};
  // Outside quotes, two are an empty literal, unless something follows that must be the value.
  if (c != around && atEnd) return std::nullopt;
  return Literal{i + 2, Form::doubledQuotes, c};
}

std::optional<Literal> QuotedText::literalAddedAt(std::size_t i) const {
  i = skip(i, kSpace);
  if (text_.substr(i, 2) == "||")
    i += 2;
  else if (isIn(at(i), "&+") && i < text_.size())
    ++i;
  else
    return std::nullopt;
  i = skip(i, kSpace);
  return at(i) == '{' ? std::nullopt : literalAt(i, false, '\0');
}

std::size_t QuotedText::endOfContent(const Literal& literal) const {
  if (literal.form == Literal::Form::nested) return endOfNested(literal.begin);
  for (std::size_t i = text_.find(literal.close, literal.begin); i != text_.npos;
       i = text_.find(literal.close, i)) {
    const std::size_t end = endOfRun(i);
    const std::size_t count = end - i;
    switch (literal.form) {
      case Literal::Form::escapedQuotes:
        if (!isClosing(i, literal))
          ++i;
        else if (isDoubled(i, literal))
          i += literal.backslashes + 2;
        else
          return std::max(i - literal.backslashes, literal.begin);
        break;
      case Literal::Form::doubledQuotes:
        if (count % 4 != 0) return i + count / 4 * 4;
        i = end;
        break;
      default:
        if (count % 2 != 0) return end - 1;
        i = end;
    }
  }
  return text_.size();
}

/// Each time that JSON is quoted, n backslashes in front of a quote become 2n + 1.
bool QuotedText::isClosing(std::size_t quote, const Literal& literal) const noexcept {
  std::size_t begin = quote;
  while (begin > literal.begin && text_[begin - 1] == '\\') --begin;
  const std::size_t period = 2 * (literal.backslashes + 1);
  return (quote - begin + 1) % period == literal.backslashes + 1;
}

/// Whether the closing quote, of a text that is itself quoted, stands there twice and so closes nothing.
bool QuotedText::isDoubled(std::size_t quote, const Literal& literal) const {
  return literal.backslashes > 0 && !literal.doubled && isPair(quote - literal.backslashes, quote);
}

std::size_t QuotedText::endOfNested(std::size_t i) const {
  std::size_t depth = 1;
  for (bool inText = false; i < text_.size(); ++i) {
    const char c = text_[i];
    if (c == '\\')
      ++i;
    else if (c == '"')
      inText = !inText;
    else if (!inText && isIn(c, "{["))
      ++depth;
    else if (!inText && isIn(c, "}]") && --depth == 0)
      return i;
  }
  return text_.size();
}

}  // namespace tav
