#include "expressions/script_scanner.h"

#include <optional>

#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kCreate = "CREATE";
constexpr std::string_view kMeasures = "MEASURES";

bool isScriptBlank(char c) {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

/// Finds one word or mark ever further on in a text. A place that was found stays found, and a search that
/// missed is not repeated, so that all searches together cost one pass.
class ForwardSearch {
 public:
  using Find = std::size_t (*)(std::string_view text, std::string_view part, std::size_t start);
  ForwardSearch(std::string_view text, std::string_view part, Find find)
      : text_(text), part_(part), find_(find) {}

  /// The first place at or after `start`, which is never smaller than it was before; kNone when there is
  /// none.
  std::size_t from(std::size_t start) {
    if (!searched_ || found_ < start) found_ = find_(text_, part_, start);
    searched_ = true;
    return found_;
  }

 private:
  std::string_view text_;
  std::string_view part_;
  Find find_;
  std::size_t found_ = 0;
  bool searched_ = false;
};

std::size_t findText(std::string_view text, std::string_view part, std::size_t start) {
  return text.find(part, start);
}

bool startsLikeLineComment(std::string_view segment) {
  const std::size_t first = segment.find_first_not_of(kBlanks);
  if (first == kNone) return false;
  const std::string_view rest = segment.substr(first);
  return rest.starts_with("//") || rest.starts_with("-- ");
}

std::string upperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

/// The dot behind `<cube>.[Measures]` or `<cube>.Measures` in a statement in capitals; kNone when the member
/// belongs to another dimension.
std::size_t findDotBehindMeasures(std::string_view upper) {
  const std::size_t first = upper.find('.');
  const std::size_t second = first == kNone ? kNone : upper.find('.', first + 1);
  if (second == kNone) return kNone;
  const bool bracket = second > 1 && upper[second - 1] == ']';
  const std::string_view before = upper.substr(0, bracket ? second - 1 : second);
  return before.ends_with(kMeasures) ? second : kNone;
}

std::string_view withoutBrackets(std::string_view name) {
  const bool bracketed = name.size() > 2 && name.front() == '[' && name.back() == ']';
  return bracketed ? name.substr(1, name.size() - 2) : name;
}

std::string_view withoutComma(std::string_view expression) {
  const bool comma = expression.size() > 1 && expression.back() == ',';
  return comma ? trimmed(expression.substr(0, expression.size() - 1)) : expression;
}

/// What one statement defines; nothing when it is no calculated measure.
std::optional<CalculatedMeasure> readStatement(std::string_view statement, std::string_view upper) {
  const std::size_t dot = findDotBehindMeasures(upper);
  const std::size_t as = dot == kNone ? kNone : findWord(upper, "AS", dot + 1);
  if (as == kNone) return std::nullopt;
  const std::size_t format = upper.find("FORMAT_STRING", as);
  const std::size_t end = format == kNone ? statement.size() : format;
  const std::string_view name = trimmed(statement.substr(dot + 1, as - dot - 1));
  const std::string_view expression = trimmed(statement.substr(as + 2, end - as - 2));
  return CalculatedMeasure{withoutBrackets(name), withoutComma(expression), statement};
}

}  // namespace

std::size_t findWord(std::string_view text, std::string_view word, std::size_t start) {
  for (std::size_t at = text.find(word, start); at != kNone; at = text.find(word, at + word.size())) {
    const std::size_t end = at + word.size();
    const bool begins = at == 0 || isScriptBlank(text[at - 1]);
    if (begins && (end == text.size() || isScriptBlank(text[end]))) return at;
  }
  return kNone;
}

std::string removeScriptComments(std::string_view script) {
  ForwardSearch lineEnds(script, "\n", &findText);
  ForwardSearch openings(script, "/*", &findText);
  ForwardSearch closings(script, "*/", &findText);
  std::string result;
  std::size_t at = 0;
  bool last = false;
  while (!last && at < script.size()) {
    const std::size_t lineEnd = lineEnds.from(at);
    last = lineEnd == kNone;
    const std::size_t next = last ? script.size() : lineEnd + 1;
    const std::string_view segment = script.substr(at, next - at);
    // Whether the text behind a block comment begins a line is not known any more: it counts as if it did.
    if (!last && startsLikeLineComment(segment)) {
      at = next;
      continue;
    }
    const std::size_t opening = openings.from(at);
    const std::size_t closing = opening < next ? closings.from(opening) : kNone;
    if (closing == kNone) {
      result += segment;
      at = next;
    } else {
      result += script.substr(at, opening - at);
      at = closing + 2;
    }
  }
  return result;
}

std::vector<CalculatedMeasure> findCalculatedMeasures(std::string_view script) {
  // Words are found in capitals, texts are cut from the script as it is written: both have one length.
  const std::string upper = upperCase(script);
  ForwardSearch members(upper, "MEMBER", &findWord);
  std::vector<CalculatedMeasure> measures;
  for (std::size_t at = findWord(upper, kCreate, 0); at != kNone;) {
    const std::size_t end = upper.find(';', at);
    if (end == kNone) break;  // a statement that nothing ends defines nothing
    // A CREATE without a MEMBER of its own, such as a set's, must not take that of a later statement.
    if (members.from(at + kCreate.size() + 1) <= end) {
      const std::size_t size = end - at + 1;
      if (auto measure = readStatement(script.substr(at, size), std::string_view(upper).substr(at, size)))
        measures.push_back(*measure);
    }
    at = findWord(upper, kCreate, end);
  }
  return measures;
}

}  // namespace tav
