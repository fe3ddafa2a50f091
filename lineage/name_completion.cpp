#include "lineage/name_completion.h"

#include <algorithm>

#include "framework/std/dotted_name.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::size_t kMost = 1000;

/// How many bytes all of the texts, which are ordered, have in common.
std::size_t commonLength(const std::set<std::string, std::less<>>& texts) {
  const std::string& first = *texts.begin();
  const std::string& last = *texts.rbegin();
  const auto differs = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
  return static_cast<std::size_t>(differs - first.begin());
}

/// The end of the part of a path that the byte at `place` is in, its slash included.
std::size_t pathPartEnd(std::string_view path, std::size_t place) {
  const std::size_t slash = path.find('/', place);
  return slash == path.npos ? path.size() : slash + 1;
}

/// The same for the parts of a qualified name and their dots.
std::size_t namePartEnd(std::string_view name, std::size_t place) {
  std::size_t end = 0;
  while (end < name.size() && end <= place)
    end = std::min(name.size(), end + namePartLength(name.substr(end)) + 1);
  return end;
}

}  // namespace

void NameCompletion::add(std::string_view name, std::string_view qualifiedName, std::string_view path) {
  if (isPath()) return addText(path);
  addText(qualifiedName);
  if (!typed_.empty()) addText(name);
}

void NameCompletion::addText(std::string_view text) {
  const bool begins = text.substr(0, typed_.size()) == typed_;
  if (begins && !text.empty() && printable(text) == text) texts_.emplace(text);
}

std::vector<std::string> NameCompletion::names() const {
  if (texts_.empty()) return {};
  const std::size_t common = commonLength(texts_);
  std::vector<std::string> names;
  for (const std::string& text : texts_) {
    const std::size_t end = isPath() ? pathPartEnd(text, common) : namePartEnd(text, common);
    const std::string_view part = std::string_view(text).substr(0, end);
    if (names.empty() || names.back() != part) names.emplace_back(part);
    if (names.size() > kMost) return {};
  }
  return names;
}

}  // namespace tav
