#include "framework/std/mask.h"

#include <algorithm>
#include <optional>

#include "framework/std/quoted_text.h"
#include "framework/std/secret_names.h"
#include "framework/std/string.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kHidden = "***";

bool isWordCharacter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
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

/// Reads the text once from left to right. It follows quotes, because a plain value within quotes ends with
/// them; an apostrophe or a fault in the text misleads it to the end of the line at most.
class Masking : private QuotedText {
 public:
  explicit Masking(std::string_view text) : QuotedText(text) {}

  std::string run() {
    while (place_ < text().size()) step();
    return masked_.append(text().substr(done_));
  }

 private:
  /// The value of a key in the query of a URL.
  void urlValue() { hide(place_ + 1, endOfUrlPart(place_ + 1, "&#;")); }

  /// `user:password@` in front of the host of a URL, whose slashes are at this place.
  void authority() {
    place_ += 2;
    const std::size_t end = endOfUrlPart(place_, "/?#");
    const std::size_t sign = text().substr(place_, end - place_).rfind('@');
    if (sign == text().npos) return;
    const std::size_t colon = text().substr(place_, sign).find(':');
    if (colon != text().npos) hide(place_ + colon + 1, place_ + sign);
  }

  [[nodiscard]] std::size_t endOfUrlPart(std::size_t i, std::string_view ends) const {
    while (i < text().size() && !isIn(text()[i], ends) && !isIn(text()[i], kSpace) &&
           !isIn(text()[i], "\"'<>\\"))
      ++i;
    return i;
  }

  void step() {
    const char c = text()[place_];
    if (c == '/' && at(place_ + 1) == '/' && place_ > 0 && text()[place_ - 1] == ':') return authority();
    if (isWordCharacter(c)) return word();
    if (isQuote(c)) return quote();
    if (c == '\n') around_ = '\0';
    if (c == ']') inQuery_ = false;
    ++place_;
  }

  void quote() {
    const char c = text()[place_];
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
    if (i == 0 || !isWordCharacter(text()[i - 1])) return false;
    return !isIn(text()[i - 1], "Nn") || (i > 1 && isWordCharacter(text()[i - 2]));
  }

  void word() {
    const std::size_t begin = place_;
    place_ = endOfName(begin);
    const std::string_view name = text().substr(begin, place_ - begin);
    if (isSecretName(name)) {
      if (const std::optional<Key> key = keyAt(begin, place_)) value(*key);
    } else if (isSecretQueryName(name)) {
      queryName(begin);
    } else if (foldCase(name) == "query") {
      inQuery_ = beginsRecord(place_);
    }
  }

  /// Where the name that begins at `begin` ends: with its hyphens if that makes it one of a secret, else with
  /// its first word.
  [[nodiscard]] std::size_t endOfName(std::size_t begin) const {
    std::size_t word = begin;
    while (isWordCharacter(at(word))) ++word;
    std::size_t end = word;
    while (end - begin <= kLongestSecretName && (isWordCharacter(at(end)) || at(end) == '-')) ++end;
    return isSecretName(text().substr(begin, end - begin)) ? end : word;
  }

  /// A name that is secret in the query of a URL, which M also writes as a record.
  void queryName(std::size_t begin) {
    if (at(place_) == '=' && begin > 0 && isIn(text()[begin - 1], "?&")) return urlValue();
    if (!inQuery_) return;
    std::optional<Key> key = keyAt(begin, place_);
    if (!key) return;
    key->literalsOnly = true;
    value(*key);
  }

  /// Whether a name that ends at `i` has a record as its value.
  [[nodiscard]] bool beginsRecord(std::size_t i) const {
    i = skip(i, kSpace);
    return at(i) == '=' && at(skip(i + 1, kSpace)) == '[';
  }

  /// The key that the word from `begin` to `end` is, if a sign follows it.
  std::optional<Key> keyAt(std::size_t begin, std::size_t end) {
    const char open = begin == 0 ? '\0' : text()[begin - 1];
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
    if (quoted && !doubled && around_ == close && text()[end] == close) around_ = '\0';
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
    if (foldCase(text().substr(begin, next - begin)) != "value") return i;
    return skip(next, "\\\"");
  }

  /// Where the key begins that the word at `i` ends: of "Jet OLEDB:Database Password" with the first word. A
  /// word in front without such a prefix may be one of a statement, as in WHERE Password = a.
  [[nodiscard]] std::size_t beginOfKey(std::size_t i) const {
    constexpr std::string_view kPrefix = "oledb";
    const auto behindWords = [this](std::size_t end) {
      while (end > 0 && (isWordCharacter(text()[end - 1]) || isIn(text()[end - 1], kBlanks))) --end;
      return end;
    };
    const std::size_t words = behindWords(i);
    if (words <= kPrefix.size() || text()[words - 1] != ':') return i;
    if (foldCase(text().substr(words - 1 - kPrefix.size(), kPrefix.size())) != kPrefix) return i;
    return behindWords(words - 1);
  }

  [[nodiscard]] char characterBefore(std::size_t i) const noexcept {
    while (i > 0 && isIn(text()[i - 1], kBlanks)) --i;
    return i == 0 ? '\n' : text()[i - 1];
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

  void hideLiteral(const Literal& literal) {
    const std::size_t end = endOfContent(literal);
    hide(literal.begin, end);
    const std::size_t left = endOfRun(end) - end;
    if (literal.form == Literal::Form::doubledQuotes)
      place_ = left > 1 ? end + 2 : end;  // a single quote closes what is around it
    else
      place_ = std::min(end + (literal.backslashes + 1) * (literal.doubled ? 2 : 1), text().size());
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
    if (!key.json || text().substr(place_, end - place_) != "null") hide(place_, end);
    place_ = end;
  }

  /// Where a value without delimiters ends, which begins at `i`; at `limit` at the latest.
  [[nodiscard]] std::size_t endOfPlain(std::size_t i, std::string_view ends,
                                       std::size_t limit = std::string_view::npos) const {
    const std::size_t begin = i;
    limit = std::min(limit, text().size());
    while (i < limit && !isIn(text()[i], ends) && !isIn(text()[i], "\r\n")) {
      if (around_ == '\0' || text()[i] != around_) {
        ++i;
        continue;
      }
      const std::size_t end = endOfRun(i);
      if (i > begin && text()[i - 1] == '\\' && isPair(i - 1, i)) {
        i = end + 2;
        continue;
      }
      if ((end - i) % 2 == 1 && !isWordCharacter(at(end))) {
        i = end - 1;
        while (i > begin && text()[i - 1] == '\\') --i;  // of quoted JSON
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
    if (next == text().size() || isIn(text()[next], ";\r\n,)]}&|+\\") || text()[next] == around_) return;
    masked_.append(text().substr(done_, place_ - done_));
    done_ = place_ = endOfPlain(next, ";", nextKey(next));
  }

  /// Where the first key behind a place begins; the end of the text or of the line without one.
  [[nodiscard]] std::size_t nextKey(std::size_t i) const {
    while (i < text().size() && !isIn(text()[i], "\r\n")) {
      const std::size_t begin = i;
      i = endOfName(begin);
      if (isSecretName(text().substr(begin, i - begin))) return begin;
      if (i == begin) ++i;
    }
    return i;
  }

  void hide(std::size_t begin, std::size_t end) {
    if (begin < end) masked_.append(text().substr(done_, begin - done_)).append(kHidden);
    if (begin < end) done_ = end;
    place_ = end;
  }

  std::string masked_;
  std::size_t done_ = 0;   // up to here the text is in masked_
  std::size_t place_ = 0;  // that is looked at
  char around_ = '\0';     // the quote that opened the text around this place
  bool inQuery_ = false;   // in the record of M that holds the query of a URL
};

}  // namespace

std::string maskPasswords(std::string_view text) {
  if (text.find_first_of("=:") == text.npos) return std::string(text);
  return Masking(text).run();
}

std::string maskProperty(std::string_view name, std::string_view value) {
  if (value.empty() || !isSecretName(name.substr(name.rfind('.') + 1))) return maskPasswords(value);
  return std::string(kHidden);
}

}  // namespace tav
