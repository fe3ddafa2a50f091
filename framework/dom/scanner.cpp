#include "framework/dom/scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <span>

#include "framework/dom/byte_runs.h"
#include "framework/dom/document_encoding.h"
#include "framework/std/string.h"
#include "framework/std/utf8.h"

namespace tav {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;
constexpr std::size_t kLongestToken = std::size_t{64} << 20;
constexpr std::size_t kLongestReference = 12;
constexpr std::string_view kDeclaration = "<?xml";
/// What stands behind all that has been read: no run goes on in it.
constexpr std::array<char, kBytesAtOnce> kEnd{};

enum : std::uint8_t {
  kNameStart = 1,
  kNamePart = 2,
  kBlank = 4,
  kEnding = 8  // may begin the end of a comment, a section or an instruction
};

constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto isOneOf = [](char c, std::string_view characters) {
    return characters.find(c) != characters.npos;
  };
  for (std::size_t i = 0; i < 0x80; ++i) {
    const char c = static_cast<char>(i);
    if (isNamePart(c)) classes[i] |= kNamePart;
    if (isNamePart(c) && !(c >= '0' && c <= '9') && !isOneOf(c, "-.:")) classes[i] |= kNameStart;
    if (isOneOf(c, " \t\r\n")) classes[i] |= kBlank;
    if (isOneOf(c, "-]?")) classes[i] |= kEnding;
  }
  return classes;
}();

bool is(std::uint8_t kind, char c) noexcept {
  return (kClasses[static_cast<unsigned char>(c)] & kind) != 0;
}

/// Behind the printable characters and tabs there, as far as none of them is a stop.
template <char... Stops> const char* passText(const char* at) noexcept {
  for (;;) {
    at = passPrintable<Stops...>(at);
    if (*at != '\t') return at;
    ++at;
  }
}

const char* passSpacesAndTabs(const char* at) noexcept {
  for (;;) {
    at = passSpaces(at);
    if (*at != '\t') return at;
    ++at;
  }
}

bool isLineEnd(char c) noexcept {
  return c == '\n' || c == '\r';
}

std::uint64_t countCharacters(std::string_view text) noexcept {
  return static_cast<std::uint64_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// How many characters of the last line of the text there are, with `before` when it has no other.
std::uint64_t charactersOfLine(std::string_view text, std::uint64_t before) noexcept {
  const std::size_t lineEnd = text.find_last_of("\r\n");
  return lineEnd == text.npos ? before + countCharacters(text) : countCharacters(text.substr(lineEnd + 1));
}

bool isEncodingName(std::string_view name) {
  const auto isAllowed = [](char c) { return is(kNamePart, c) && c != ':'; };
  return !name.empty() && is(kNameStart, name.front()) && name.front() != '_' &&
         std::all_of(name.begin(), name.end(), isAllowed);
}

/// 0 for a name that the language itself does not give a character.
char32_t namedCharacter(std::string_view name) noexcept {
  if (name == "lt") return '<';
  if (name == "gt") return '>';
  if (name == "amp") return '&';
  if (name == "quot") return '"';
  return name == "apos" ? '\'' : 0;
}

/// The character of a number as a reference writes it, decimal or behind an x; 0 where no document may hold
/// it.
char32_t numberedCharacter(std::string_view digits) noexcept {
  const bool isHexadecimal = digits.starts_with('x');
  if (isHexadecimal) digits.remove_prefix(1);
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end) return 0;
  if (number < 0x20 && number != '\t' && number != '\n' && number != '\r') return 0;
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  return isSurrogate || number == 0xFFFE || number == 0xFFFF || number > 0x10FFFF ? 0 : number;
}

}  // namespace

bool Scanner::scan() {
  readMore();
  if (!scanProlog()) return false;
  hasBegun_ = true;
  for (;;) {
    const Step step = scanNext();
    if (step == Step::foreign) return false;
    if (step == Step::incomplete && !readMore()) return isAtEnd_ && here_.at == end_ && !tree_.isOpen();
  }
}

DocumentPlace Scanner::place() const {
  return {here_.line, charactersOfLine({buffer_.get(), here_.at}, columnsBefore_) + 1};
}

/// Moves what has not been scanned to the front of the buffer, which grows when it is full of it, and reads
/// on behind it. False when nothing more comes, or a token is too long.
bool Scanner::readMore() {
  const std::string_view left = rest();
  if (isAtEnd_ || left.size() >= kLongestToken) return false;
  if (buffer_) columnsBefore_ = charactersOfLine({buffer_.get(), here_.at}, columnsBefore_);
  if (left.size() >= capacity_ / 2) {
    capacity_ = std::max(kChunk, 2 * capacity_);
    auto larger = std::make_unique_for_overwrite<char[]>(capacity_ + kEnd.size());
    left.copy(larger.get(), left.size());
    buffer_ = std::move(larger);
  } else {
    std::memmove(buffer_.get(), left.data(), left.size());
  }
  const std::size_t asked = capacity_ - left.size();
  const std::size_t count = source_.read(buffer_.get() + left.size(), asked);
  isAtEnd_ = count < asked;
  here_.at = buffer_.get();
  end_ = here_.at + left.size() + count;
  std::copy(kEnd.begin(), kEnd.end(), buffer_.get() + left.size() + count);
  return count > 0;
}

// Nothing of it is taken before the root begins: where there is a document type or another encoding, all of
// it is Expat's.
bool Scanner::scanProlog() {
  const Cursor beginning = here_;
  const char* encoding = encodingInSpiteOf(rest());
  if (encoding && std::string_view(encoding) != "UTF-8") return false;
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (rest().starts_with(kMark)) here_.at += kMark.size();
  Step step = Step::done;
  if (find(here_.at, kDeclaration) == Step::done && is(kBlank, here_.at[kDeclaration.size()]))
    step = scanDeclaration(encoding != nullptr);
  while (step == Step::done && !(*here_.at == '<' && is(kNameStart, here_.at[1])))
    step = *here_.at == '<' ? scanMarkup() : scanBlanks();
  if (step == Step::done) return true;
  here_ = beginning;
  return false;
}

// Its attributes have an order, and are written out.
Scanner::Step Scanner::scanDeclaration(bool isUnicode) {
  Cursor cursor{here_.at + kDeclaration.size(), here_.line};
  attributes_.clear();
  if (scanAttributes(cursor) != Step::done || find(cursor.at, "?>") != Step::done) return Step::foreign;
  std::span<const TagAttribute> left = attributes_;
  const auto takes = [&left](std::string_view name, auto isAllowed) {
    if (left.empty() || left.front().name != name) return false;
    const TagAttribute& attribute = left.front();
    if (attribute.isKept || !isAllowed(attribute.value)) return false;
    left = left.subspan(1);
    return true;
  };
  if (!takes("version", [](std::string_view value) { return value == "1.0"; })) return Step::foreign;
  takes("encoding", [=](std::string_view value) { return isUnicode && isEncodingName(value); });
  takes("standalone", [](std::string_view value) { return value == "yes" || value == "no"; });
  if (!left.empty()) return Step::foreign;
  here_ = {cursor.at + 2, cursor.line};
  return Step::done;
}

Scanner::Step Scanner::scanNext() {
  if (*here_.at == '<') return scanMarkup();
  return tree_.isOpen() ? scanText() : scanBlanks();
}

Scanner::Step Scanner::scanMarkup() {
  switch (here_.at[1]) {
    case '/':
      return tree_.isOpen() ? scanEndTag() : Step::foreign;
    case '?':
      return scanInstruction();
    case '!':
      return tree_.isOpen() && here_.at[2] == '[' ? scanSection() : scanComment();
    default:
      return tree_.isFinished() ? Step::foreign : scanStartTag();
  }
}

Scanner::Step Scanner::scanStartTag() {
  Cursor cursor{here_.at + 1, here_.line};
  if (!is(kNameStart, *cursor.at)) return cutOrForeign(cursor.at);
  cursor.at = passNameParts(cursor.at);
  const std::string_view name(here_.at + 1, cursor.at);
  attributes_.clear();
  if (const Step step = scanAttributes(cursor); step != Step::done) return step;
  const bool isEmpty = *cursor.at == '/';
  if (isEmpty) ++cursor.at;
  if (*cursor.at != '>') return cutOrForeign(cursor.at);
  ++cursor.at;
  tree_.start(name, here_.line, attributes_);
  if (isEmpty) tree_.endWith({});
  here_ = cursor;
  return Step::done;
}

// As far as something stands that is no attribute.
Scanner::Step Scanner::scanAttributes(Cursor& cursor) {
  for (;;) {
    const char* before = cursor.at;
    if (const Step step = passBlanks(cursor); step != Step::done) return step;
    if (*cursor.at == '>' || *cursor.at == '/' || *cursor.at == '?')
      return namesDiffer() ? Step::done : Step::foreign;
    if (cursor.at == before) return cutOrForeign(cursor.at);
    if (const Step step = scanAttribute(cursor); step != Step::done) return step;
  }
}

Scanner::Step Scanner::scanAttribute(Cursor& cursor) {
  if (!is(kNameStart, *cursor.at)) return cutOrForeign(cursor.at);
  const char* name = cursor.at;
  cursor.at = passNameParts(cursor.at);
  TagAttribute attribute{{name, cursor.at}, {}};
  if (const Step step = passBlanks(cursor); step != Step::done) return step;
  if (*cursor.at != '=') return cutOrForeign(cursor.at);
  ++cursor.at;
  if (const Step step = passBlanks(cursor); step != Step::done) return step;
  if (*cursor.at != '"' && *cursor.at != '\'') return cutOrForeign(cursor.at);
  if (const Step step = scanValue(cursor, attribute); step != Step::done) return step;
  attributes_.push_back(attribute);
  return Step::done;
}

Scanner::Step Scanner::scanValue(Cursor& cursor, TagAttribute& attribute) {
  const char quote = *cursor.at++;
  const char* run = cursor.at;  // from here on the value is what is written
  text_.clear();
  for (;;) {
    cursor.at = passPrintable<'<', '&', '"', '\''>(cursor.at);
    const char c = *cursor.at;
    if (c == quote) break;
    Step step = Step::done;
    if (c == '"' || c == '\'') {
      ++cursor.at;
    } else if (is(kBlank, c) || c == '&') {
      text_.append(run, cursor.at);
      step = c == '&' ? passReference(cursor, text_) : passBlank(cursor);
      if (c != '&') text_ += ' ';
      attribute.isKept = true;
      run = cursor.at;
    } else {
      step = passCharacter(cursor);
    }
    if (step != Step::done) return step;
  }
  attribute.value = {run, cursor.at};
  if (attribute.isKept) attribute.value = tree_.keep(text_.append(run, cursor.at));
  ++cursor.at;
  return Step::done;
}

Scanner::Step Scanner::scanEndTag() {
  Cursor cursor = here_;
  if (const Step step = passEndTag(cursor); step != Step::done) return step;
  tree_.end();
  here_ = cursor;
  return Step::done;
}

// Indentation is most of the text between tags: what is known to be that is not looked at again.
void Scanner::scanIndentation() {
  while (is(kBlank, *here_.at)) {
    const char* run = here_.at;
    if (isLineEnd(*run)) {
      if (passLineEnd(here_) != Step::done) return;
      run = here_.at - 1;
      if (*run == '\r') {
        tree_.addBlanks("\n");
        ++run;
      }
    }
    here_.at = passSpacesAndTabs(here_.at);
    tree_.addBlanks({run, here_.at});
  }
}

// It takes what is plain of the text, also when the rest of it is not, or has not been read.
Scanner::Step Scanner::scanText() {
  scanIndentation();
  Cursor cursor = here_;
  const char* run = cursor.at;  // from here on the text is what is written, and has not been taken
  const auto take = [&] {
    tree_.addText({run, cursor.at});
    run = cursor.at;
    here_ = cursor;
  };
  for (;;) {
    cursor.at = passText<'<', '&', ']'>(cursor.at);
    Step step = Step::done;
    switch (*cursor.at) {
      case '\n':
        ++cursor.at;
        ++cursor.line;
        break;
      case '\r':
        take();
        step = passLineEnd(cursor);
        if (step == Step::done) tree_.addText("\n");
        run = cursor.at;
        break;
      case '&':
        take();
        text_.clear();
        step = passReference(cursor, text_);
        tree_.addText(text_);
        run = cursor.at;
        break;
      case ']':
        step = passBracket(cursor);
        break;
      case '<':
        if (scanLeaf({run, cursor.at}, cursor)) return Step::done;
        take();
        return Step::done;
      default:
        step = passCharacter(cursor);
    }
    if (step == Step::done) continue;
    take();
    return step;
  }
}

// An element that holds one piece of text alone, as most do, needs no copy of it but its own.
bool Scanner::scanLeaf(std::string_view text, Cursor end) {
  if (end.at[1] != '/' || !tree_.isBare() || passEndTag(end) != Step::done) return false;
  tree_.endWith(text);
  here_ = end;
  return true;
}

Scanner::Step Scanner::scanBlanks() {
  const Step step = passBlanks(here_);
  return step == Step::done && *here_.at != '<' ? cutOrForeign(here_.at) : step;
}

Scanner::Step Scanner::scanComment() {
  constexpr std::string_view kOpening = "<!--";
  if (const Step step = find(here_.at, kOpening); step != Step::done) return step;
  Cursor cursor{here_.at + kOpening.size(), here_.line};
  if (const Step step = passTo(cursor, "--", [](std::string_view) {}); step != Step::done) return step;
  if (*cursor.at != '>') return cutOrForeign(cursor.at);
  here_ = {cursor.at + 1, cursor.line};
  return Step::done;
}

Scanner::Step Scanner::scanSection() {
  constexpr std::string_view kOpening = "<![CDATA[";
  if (const Step step = find(here_.at, kOpening); step != Step::done) return step;
  Cursor cursor{here_.at + kOpening.size(), here_.line};
  text_.clear();
  const auto add = [this](std::string_view text) { text_ += text; };
  if (const Step step = passTo(cursor, "]]>", add); step != Step::done) return step;
  tree_.addText(text_);
  here_ = cursor;
  return Step::done;
}

Scanner::Step Scanner::scanInstruction() {
  Cursor cursor{here_.at + 2, here_.line};
  if (!is(kNameStart, *cursor.at)) return cutOrForeign(cursor.at);
  cursor.at = passNameParts(cursor.at);
  // In any letter case it belongs to the beginning of a document alone.
  if (foldCase({here_.at + 2, cursor.at}) == "xml") return Step::foreign;
  if (!is(kBlank, *cursor.at)) {
    if (const Step step = find(cursor.at, "?>"); step != Step::done) return step;
  }
  if (const Step step = passTo(cursor, "?>", [](std::string_view) {}); step != Step::done) return step;
  here_ = cursor;
  return Step::done;
}

// Behind the closing text; what stands before it is given to `take` piece by piece.
template <class Take>
Scanner::Step Scanner::passTo(Cursor& cursor, std::string_view closing, Take take) const {
  for (;;) {
    const char* run = cursor.at;
    cursor.at = passText<'-', ']', '?'>(cursor.at);
    take(std::string_view(run, cursor.at));
    run = cursor.at;
    if (isLineEnd(*cursor.at)) {
      if (const Step step = passLineEnd(cursor); step != Step::done) return step;
      take("\n");
      continue;
    }
    const bool maybeEnd = *cursor.at == closing.front();
    const Step end = maybeEnd ? find(cursor.at, closing) : Step::foreign;
    if (end == Step::incomplete) return end;
    if (end == Step::done) {
      cursor.at += closing.size();
      return end;
    }
    if (is(kEnding, *cursor.at))
      ++cursor.at;
    else if (const Step step = passCharacter(cursor); step != Step::done)
      return step;
    take(std::string_view(run, cursor.at));
  }
}

Scanner::Step Scanner::passEndTag(Cursor& cursor) const {
  cursor.at += 2;
  const std::string_view name = tree_.innermost().getTagName();
  if (const Step step = find(cursor.at, name); step != Step::done) return step;
  cursor.at += name.size();
  if (const Step step = passBlanks(cursor); step != Step::done) return step;
  if (*cursor.at != '>') return cutOrForeign(cursor.at);
  ++cursor.at;
  return Step::done;
}

Scanner::Step Scanner::passBlanks(Cursor& cursor) const {
  while (is(kBlank, *cursor.at))
    if (const Step step = passBlank(cursor); step != Step::done) return step;
  return Step::done;
}

Scanner::Step Scanner::passBlank(Cursor& cursor) const {
  if (isLineEnd(*cursor.at)) return passLineEnd(cursor);
  ++cursor.at;
  return Step::done;
}

Scanner::Step Scanner::passLineEnd(Cursor& cursor) const {
  const bool isPair = *cursor.at == '\r' && cursor.at[1] == '\n';
  if (*cursor.at == '\r' && cursor.at + 1 == end_) return Step::incomplete;
  cursor.at += isPair ? 2 : 1;
  ++cursor.line;
  return Step::done;
}

Scanner::Step Scanner::passBracket(Cursor& cursor) const {
  const Step step = find(cursor.at, "]]>");
  if (step == Step::done) return Step::foreign;
  if (step == Step::incomplete) return step;
  ++cursor.at;
  return Step::done;
}

Scanner::Step Scanner::passCharacter(Cursor& cursor) const {
  constexpr std::size_t kLongest = 4;
  const std::string_view left(cursor.at, end_);
  if (left.empty()) return Step::incomplete;
  if (static_cast<unsigned char>(left.front()) < 0x80) return Step::foreign;
  const std::size_t length = utf8Length(left);
  if (length == 0) return left.size() < kLongest ? Step::incomplete : Step::foreign;
  if (left.starts_with("\xEF\xBF\xBE") || left.starts_with("\xEF\xBF\xBF")) return Step::foreign;
  cursor.at += length;
  return Step::done;
}

Scanner::Step Scanner::passReference(Cursor& cursor, std::string& text) const {
  const std::string_view left = std::string_view(cursor.at, end_).substr(1, kLongestReference);
  const std::size_t length = left.find(';');
  if (length == left.npos) return left.size() < kLongestReference ? Step::incomplete : Step::foreign;
  std::string_view name = left.substr(0, length);
  char32_t character = namedCharacter(name);
  if (name.starts_with('#')) character = numberedCharacter(name.substr(1));
  if (character == 0) return Step::foreign;
  appendUtf8(text, character);
  cursor.at += length + 2;
  return Step::done;
}

Scanner::Step Scanner::find(const char* at, std::string_view text) const {
  const std::string_view left(at, end_);
  if (left.starts_with(text)) return Step::done;
  return left.size() < text.size() && text.starts_with(left) ? Step::incomplete : Step::foreign;
}

bool Scanner::namesDiffer() const {
  if (attributes_.size() < 2) return true;
  if (attributes_.size() == 2) return attributes_.front().name != attributes_.back().name;
  std::vector<std::string_view> names;
  names.reserve(attributes_.size());
  for (const TagAttribute& attribute : attributes_) names.push_back(attribute.name);
  std::sort(names.begin(), names.end());
  return std::adjacent_find(names.begin(), names.end()) == names.end();
}

}  // namespace tav
