#include "framework/std/mask.h"

#include <algorithm>
#include <array>
#include <optional>

#include "framework/std/string.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kBehindValue = " \t\r\n,;)]}&|+";
constexpr std::string_view kHidden = "***";
constexpr std::array<std::string_view, 9> kKeys{
    "password", "pwd",    "accountkey",   "sharedaccesskey", "sharedaccesssignature",
    "api_key",  "apikey", "access_token", "client_secret"};
/// Keys that hold a secret in the query of a URL, and mean other things elsewhere.
constexpr std::array<std::string_view, 6> kUrlKeys{"sig", "key", "token", "code", "secret", "signature"};

constexpr bool isIn(char c, std::string_view characters) noexcept {
  return characters.find(c) != characters.npos;
}

bool isWordCharacter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

constexpr bool isQuote(char c) noexcept {
  return c == '"' || c == '\'';
}

bool isKey(std::string_view word) {
  return std::any_of(kKeys.begin(), kKeys.end(), [&](std::string_view key) {
    return word.size() == key.size() && foldCase(word) == key;
  });
}

bool isUrlKey(std::string_view word) {
  return std::any_of(kUrlKeys.begin(), kUrlKeys.end(), [&](std::string_view key) {
    return word.size() == key.size() && foldCase(word) == key;
  });
}

/// A key with a sign behind it.
struct Key {
  std::size_t value;  ///< the place behind the sign
  char before;        ///< the nearest character that is no blank; a line end at the start of a line
  bool json;          ///< the sign is a colon
  bool quoted;
  bool tight;         ///< nothing stands between key and sign
  bool literalsOnly;  ///< rather a column, `[Password]` or `u.Password`, which is compared with something

  /// Whether it is sure to be one of a connection string.
  [[nodiscard]] bool startsPair() const noexcept {
    return !quoted && (isIn(before, "\n;") || isQuote(before));
  }
  /// What ends a plain value behind it, beside the end of the line and of the quotes around it.
  [[nodiscard]] std::string_view ends() const noexcept {
    if (json || isIn(before, "[({,")) return ";,])}";
    return isIn(before, "?&") ? ";&" : ";";
  }
};

/// A value in quotes, braces or brackets.
struct Literal {
  enum class Form : std::uint8_t {
    quotes,         ///< a quote inside is doubled
    doubledQuotes,  ///< a literal within a literal: `""a""`, and a quote inside is `""""`
    escapedQuotes,  ///< a quote inside has a backslash; see `backslashes`
    braces,         ///< a closing brace inside is doubled
    nested,         ///< an object or a list of JSON
  };
  std::size_t begin;  ///< of what stands inside
  Form form;
  char close;
  /// In front of each quote: JSON that is itself quoted has one, quoted again three.
  std::size_t backslashes = 0;
  /// With escapes: the quotes of the literal are doubled as well, as M is that stands in JSON.
  bool doubled = false;
};

/// Reads the text once from left to right. It follows quotes, because a plain value within quotes ends with
/// them; an apostrophe or a fault in the text misleads it to the end of the line at most.
class Masking {
 public:
  explicit Masking(std::string_view text) : text_(text) {}

  std::string run() {
    while (place_ < text_.size()) step();
    return masked_.append(text_.substr(done_));
  }

 private:
  [[nodiscard]] char at(std::size_t i) const noexcept { return i < text_.size() ? text_[i] : '\0'; }
  [[nodiscard]] std::size_t skip(std::size_t i, std::string_view characters) const noexcept {
    return std::min(text_.find_first_not_of(characters, i), text_.size());
  }
  /// The end of the row of equal characters that begins at `i`.
  [[nodiscard]] std::size_t endOfRun(std::size_t i) const noexcept {
    return std::min(text_.find_first_not_of(at(i), i), text_.size());
  }

  /// The value of a key in the query of a URL.
  void urlValue() { hide(place_ + 1, endOfUrlPart(place_ + 1, "&#;")); }

  /// `user:password@` in front of the host of a URL, whose slashes are at this place.
  void authority() {
    place_ += 2;
    const std::size_t end = endOfUrlPart(place_, "/?#");
    const std::size_t sign = text_.substr(place_, end - place_).rfind('@');
    if (sign == text_.npos) return;
    const std::size_t colon = text_.substr(place_, sign).find(':');
    if (colon != text_.npos) hide(place_ + colon + 1, place_ + sign);
  }

  [[nodiscard]] std::size_t endOfUrlPart(std::size_t i, std::string_view ends) const {
    while (i < text_.size() && !isIn(text_[i], ends) && !isIn(text_[i], kSpace) && !isIn(text_[i], "\"'<>\\"))
      ++i;
    return i;
  }

  void step() {
    const char c = text_[place_];
    if (c == '/' && at(place_ + 1) == '/' && place_ > 0 && text_[place_ - 1] == ':') return authority();
    if (isWordCharacter(c)) return word();
    if (isQuote(c)) return quote();
    if (c == '\n') around_ = '\0';
    ++place_;
  }

  void quote() {
    const char c = text_[place_];
    const char next = at(place_ + 1);
    if (around_ == c && next == c)
      ++place_;
    else if (around_ == c && !isWordCharacter(next))
      around_ = '\0';
    else if (around_ == '\0' && (c == '"' || !isApostrophe(place_)))
      around_ = c;
    ++place_;
  }

  /// Whether the single quote stands behind a letter, but for N'...'.
  [[nodiscard]] bool isApostrophe(std::size_t i) const noexcept {
    if (i == 0 || !isWordCharacter(text_[i - 1])) return false;
    return !isIn(text_[i - 1], "Nn") || (i > 1 && isWordCharacter(text_[i - 2]));
  }

  void word() {
    const std::size_t begin = place_;
    while (isWordCharacter(at(place_))) ++place_;
    const std::string_view name = text_.substr(begin, place_ - begin);
    if (isUrlKey(name) && at(place_) == '=' && begin > 0 && isIn(text_[begin - 1], "?&")) return urlValue();
    if (!isKey(name)) return;
    if (const std::optional<Key> key = keyAt(begin, place_)) value(*key);
  }

  /// The key that the word from `begin` to `end` is, if a sign follows it.
  std::optional<Key> keyAt(std::size_t begin, std::size_t end) {
    const char open = begin == 0 ? '\0' : text_[begin - 1];
    std::size_t i = skip(end, "\\");
    const char close = at(i);
    const bool bracketed = open == '[' && close == ']';
    const bool quoted = bracketed || (isQuote(close) && open == close);
    const bool doubled = quoted && isPair(end, i);
    i = quoted ? i + 1 + (doubled ? i + 1 - end : 0) : end;
    if (quoted) i = behindValueName(i);
    const std::size_t sign = skip(i, kSpace);
    const bool json = at(sign) == ':';
    if (!json && at(sign) != '=') return std::nullopt;
    if (quoted && !doubled && around_ == close && text_[end] == close) around_ = '\0';
    return Key{json ? sign + 1 : endOfRun(sign),
               characterBefore(quoted ? begin : beginOfKey(begin)),
               json,
               quoted,
               sign == i,
               bracketed || open == '.' || (json && !quoted)};
  }

  /// Where a key and its value are members of their own, "name": "pwd", "value": "a", the place behind the
  /// name of the second; else `i`.
  [[nodiscard]] std::size_t behindValueName(std::size_t i) const {
    std::size_t next = skip(i, kSpace);
    if (at(next) != ',') return i;
    const std::size_t begin = skip(next + 1, " \t\r\n\\\"");
    for (next = begin; isWordCharacter(at(next));) ++next;
    if (foldCase(text_.substr(begin, next - begin)) != "value") return i;
    return skip(next, "\\\"");
  }

  /// Where the key begins that the word at `i` ends: of "Jet OLEDB:Database Password" with the first word. A
  /// word in front without such a prefix may be one of a statement, as in WHERE Password = a.
  [[nodiscard]] std::size_t beginOfKey(std::size_t i) const {
    constexpr std::string_view kPrefix = "oledb";
    const auto behindWords = [this](std::size_t end) {
      while (end > 0 && (isWordCharacter(text_[end - 1]) || isIn(text_[end - 1], kBlanks))) --end;
      return end;
    };
    const std::size_t words = behindWords(i);
    if (words <= kPrefix.size() || text_[words - 1] != ':') return i;
    if (foldCase(text_.substr(words - 1 - kPrefix.size(), kPrefix.size())) != kPrefix) return i;
    return behindWords(words - 1);
  }

  [[nodiscard]] char characterBefore(std::size_t i) const noexcept {
    while (i > 0 && isIn(text_[i - 1], kBlanks)) --i;
    return i == 0 ? '\n' : text_[i - 1];
  }

  void value(const Key& key) {
    place_ = key.value;
    if (const std::optional<Literal> literal = literalAt(skip(place_, kSpace), key.json, around_)) {
      hideLiteral(*literal);
      while (const std::optional<Literal> more = literalAddedAt(place_)) hideLiteral(*more);
      if (key.startsPair() || isWordCharacter(at(place_))) dropRest();
    } else if (!key.literalsOnly || key.json) {
      hidePlain(key);
      hidePieces();
    }
  }

  /// The literal at `i`; none when it is empty, or when there only is the quote that closes what is `around`.
  [[nodiscard]] std::optional<Literal> literalAt(std::size_t i, bool json, char around) const {
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

  /// Whether the quote with the escapes before it, which begin at `begin`, stands there twice.
  [[nodiscard]] bool isPair(std::size_t begin, std::size_t quote) const {
    const std::size_t size = quote + 1 - begin;
    return text_.substr(quote + 1, size) == text_.substr(begin, size);
  }

  /// The literal that an operator at `i` adds to the one in front.
  [[nodiscard]] std::optional<Literal> literalAddedAt(std::size_t i) const {
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

  void hideLiteral(const Literal& literal) {
    const std::size_t end = endOfContent(literal);
    hide(literal.begin, end);
    const std::size_t left = endOfRun(end) - end;
    if (literal.form == Literal::Form::doubledQuotes)
      place_ = left > 1 ? end + 2 : end;  // a single quote closes what is around it
    else
      place_ = std::min(end + (literal.backslashes + 1) * (literal.doubled ? 2 : 1), text_.size());
  }

  /// Where the closing quote, brace or bracket begins, its backslashes included; the end of the text without.
  [[nodiscard]] std::size_t endOfContent(const Literal& literal) const {
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
  [[nodiscard]] bool isClosing(std::size_t quote, const Literal& literal) const noexcept {
    std::size_t begin = quote;
    while (begin > literal.begin && text_[begin - 1] == '\\') --begin;
    const std::size_t period = 2 * (literal.backslashes + 1);
    return (quote - begin + 1) % period == literal.backslashes + 1;
  }

  /// Whether the closing quote, of a text that is itself quoted, stands there twice and so closes nothing.
  [[nodiscard]] bool isDoubled(std::size_t quote, const Literal& literal) const {
    return literal.backslashes > 0 && !literal.doubled && isPair(quote - literal.backslashes, quote);
  }

  [[nodiscard]] std::size_t endOfNested(std::size_t i) const {
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

  void hidePlain(const Key& key) {
    place_ = skip(key.value, kBlanks);
    if (isQuote(at(place_))) {  // an empty literal, and perhaps the quote that closes what is around it
      const std::size_t end = endOfRun(place_);
      place_ = at(place_) == around_ && (end - place_) % 2 == 1 ? end - 1 : end;
      return;
    }
    const bool isValue = key.json ? key.quoted : key.startsPair() || (key.tight && place_ == key.value);
    if (!isValue) return;
    const std::size_t end = endOfPlain(place_, key.ends());
    if (!key.json || text_.substr(place_, end - place_) != "null") hide(place_, end);
    place_ = end;
  }

  /// Where a value without delimiters ends, which begins at `i`; at `limit` at the latest.
  [[nodiscard]] std::size_t endOfPlain(std::size_t i, std::string_view ends,
                                       std::size_t limit = std::string_view::npos) const {
    const std::size_t begin = i;
    limit = std::min(limit, text_.size());
    while (i < limit && !isIn(text_[i], ends) && !isIn(text_[i], "\r\n")) {
      if (around_ == '\0' || text_[i] != around_) {
        ++i;
        continue;
      }
      const std::size_t end = endOfRun(i);
      if (i > begin && text_[i - 1] == '\\' && isPair(i - 1, i)) {
        i = end + 2;
        continue;
      }
      if ((end - i) % 2 == 1 && !isWordCharacter(at(end))) {
        i = end - 1;
        while (i > begin && text_[i - 1] == '\\') --i;  // of quoted JSON
        break;
      }
      i = end;
    }
    return i;
  }

  /// Where the text with the value is put together, "Password=" & "a", the value goes on in its other pieces.
  void hidePieces() {
    while (around_ != '\0' && at(place_) == around_) {
      const std::optional<Literal> more = literalAddedAt(place_ + 1);
      if (!more) return;
      around_ = more->close;
      hide(more->begin, endOfPlain(more->begin, ";"));
    }
  }

  /// Some drivers take quotes for a part of the password: what stands behind them is one, too. It may go up
  /// to the next password of the text, whose end is to be found from its own key.
  void dropRest() {
    const std::size_t next = skip(place_, kBlanks);
    if (next == text_.size() || isIn(text_[next], ";\r\n,)]}&|+\\") || text_[next] == around_) return;
    masked_.append(text_.substr(done_, place_ - done_));
    done_ = place_ = endOfPlain(next, ";", nextKey(next));
  }

  /// Where the first key behind a place begins; the end of the text or of the line without one.
  [[nodiscard]] std::size_t nextKey(std::size_t i) const {
    while (i < text_.size() && !isIn(text_[i], "\r\n")) {
      const std::size_t begin = i;
      while (isWordCharacter(at(i))) ++i;
      if (isKey(text_.substr(begin, i - begin))) return begin;
      if (i == begin) ++i;
    }
    return i;
  }

  void hide(std::size_t begin, std::size_t end) {
    if (begin < end) masked_.append(text_.substr(done_, begin - done_)).append(kHidden);
    if (begin < end) done_ = end;
    place_ = end;
  }

  std::string_view text_;
  std::string masked_;
  std::size_t done_ = 0;   // up to here the text is in masked_
  std::size_t place_ = 0;  // that is looked at
  char around_ = '\0';     // the quote that opened the text around this place
};

}  // namespace

std::string maskPasswords(std::string_view text) {
  if (text.find_first_of("=:") == text.npos) return std::string(text);
  return Masking(text).run();
}

std::string maskProperty(std::string_view name, std::string_view value) {
  if (value.empty() || !isKey(name.substr(name.rfind('.') + 1))) return maskPasswords(value);
  return std::string(kHidden);
}

}  // namespace tav
