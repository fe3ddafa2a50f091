#include "exports/answers/diff_words.h"

#include <algorithm>
#include <utility>

#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::size_t kFirst = 3;

/// "2 measures, 12 view columns", in the order of the objects.
std::string countsText(const std::vector<DiffObject>& objects) {
  std::vector<std::pair<NodeKind, std::size_t>> counts;
  for (const DiffObject& object : objects) {
    const auto known = std::find_if(counts.begin(), counts.end(),
                                    [&](const auto& count) { return count.first == object.kind; });
    if (known == counts.end())
      counts.emplace_back(object.kind, 1);
    else
      ++known->second;
  }
  std::string text;
  for (const auto& [kind, count] : counts) {
    if (!text.empty()) text += ", ";
    text.append(std::to_string(count))
        .append(" ")
        .append(count == 1 ? rowOf(kind).label : rowOf(kind).plural);
  }
  return text;
}

bool isLong(const std::optional<std::string>& text) {
  constexpr std::size_t kLineWidth = 60;
  return text && (text->size() > kLineWidth || text->find('\n') != text->npos);
}

std::string valueText(const std::optional<std::string>& value, Quote quote) {
  if (!value) return "(none)";
  return value->empty() ? "(empty)" : quote(*value);
}

/// "view column Days.Month" with the name in quotes is read easier as one text.
std::string relationText(const Change& change, Quote quote, std::string_view arrow) {
  if (change.before && change.after)
    return change.what + ": " + quote(*change.before) + std::string(arrow) + quote(*change.after);
  const std::string what = change.what + (change.about == Change::About::name ? ": " : " ");
  return change.after ? "now also " + what + quote(*change.after)
                      : "no longer " + what + quote(*change.before);
}

}  // namespace

std::string brokenText(const BrokenName& name, Quote quote) {
  std::string text(nodeKindLabel(name.object.kind));
  text.append(" ").append(quote(name.object.name)).append(": nothing is called ").append(quote(name.name));
  return name.note.empty() ? text : text.append("; nearest: ").append(quote(name.note));
}

std::string nothingText(const ModelDiff& diff) {
  return diff.notes.empty() ? "Nothing differs." : "Nothing differs in what was compared.";
}

std::string partsText(std::size_t parts) {
  if (parts == 0) return "";
  return " with " + std::to_string(parts) + (parts == 1 ? " part" : " parts");
}

std::string firstOf(const std::vector<std::string>& names, Quote quote) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kFirst); ++i)
    text.append(i == 0 ? "" : ", ").append(quote(names[i]));
  if (names.size() > kFirst)
    text.append(" and ").append(std::to_string(names.size() - kFirst)).append(" more");
  return text;
}

std::string objectsText(const std::vector<DiffObject>& objects, Quote quote) {
  if (objects.size() == 1)
    return std::string(nodeKindLabel(objects.front().kind)) + " " + quote(objects.front().name);
  std::vector<std::string> names;
  names.reserve(objects.size());
  for (const DiffObject& object : objects) names.push_back(object.name);
  return countsText(objects) + ": " + firstOf(names, quote);
}

bool isShownAsLines(const Change& change) {
  if (change.about == Change::About::relation || change.about == Change::About::name) return false;
  return !change.onlyLayout && !change.hidden && (isLong(change.before) || isLong(change.after));
}

std::string linesTitle(const Change& change, Quote quote) {
  return change.about == Change::About::expression ? change.what + ":" : quote(change.what) + ":";
}

std::string changeText(const Change& change, Quote quote, std::string_view arrow) {
  if (change.about == Change::About::relation || change.about == Change::About::name) {
    if (change.hidden) return change.what + ": differs in what is not shown";
    return relationText(change, quote, arrow);
  }
  const std::string title = linesTitle(change, quote) + " ";
  if (change.onlyLayout) return title + "only white space and comments";
  if (change.hidden) return title + "differs in what is not shown";
  return title + valueText(change.before, quote) + std::string(arrow) + valueText(change.after, quote);
}

std::vector<ShownLine> linesOf(const Change& change) {
  std::vector<ShownLine> shown;
  const std::vector<DiffLine> lines = lineDiff(change.before ? std::string_view(*change.before) : "",
                                               change.after ? std::string_view(*change.after) : "");
  const auto differs = [&](std::size_t i) {
    return i < lines.size() && lines[i].kind != DiffLine::Kind::same;
  };
  bool gap = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const bool near = differs(i) || differs(i + 1) || (i > 0 && differs(i - 1));
    if (near && gap) shown.push_back({'@', ""});
    gap = !near;
    constexpr std::string_view kMarks = " -+";  // in the order of DiffLine::Kind
    if (near) shown.push_back({kMarks[static_cast<std::size_t>(lines[i].kind)], lines[i].line});
  }
  if (gap) shown.push_back({'@', ""});
  return shown;
}

}  // namespace tav
