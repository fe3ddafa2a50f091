#include "tests/changes/xml_changes.h"

#include <algorithm>

namespace tav::test {
namespace {

/// Whether an element stands in a list of its kind, "Levels/Level": of others a second one is not read, and
/// no server accepts it.
bool isOneOfSeveral(std::string_view path) {
  const std::string kind = kindOfPlace(path);
  const std::size_t slash = kind.rfind('/');
  if (slash == kind.npos) return false;
  const std::string_view tag = std::string_view(kind).substr(slash + 1);
  std::string_view parent = std::string_view(kind).substr(0, slash);
  parent.remove_prefix(parent.rfind('/') + 1);
  return parent == std::string(tag) + "s" || parent == std::string(tag.substr(0, tag.size() - 1)) + "ies";
}

}  // namespace

XmlChanges::XmlChanges(std::string document)
    : document_(std::move(document)), spans_(findElements(document_)) {
  elements_ = spans_.size();
  for (Place i = 0; i < elements_; ++i) {
    std::vector<Span> attributes = findAttributes(document_, Span(spans_[i]));
    std::move(attributes.begin(), attributes.end(), std::back_inserter(spans_));
  }
  findSurroundings();
  Owners owners;
  for (Place i = 0; i < elements_; ++i)
    if (!spans_[i].isOneTag()) owners[kindOfPlace(spans_[i].path)].push_back(i);
  for (Place i = 1; i < elements_; ++i) addChangesOf(i, owners);
  for (Place i = elements_; i < spans_.size(); ++i) {
    changes_.push_back({i, Way::removed});
    changes_.push_back({i, Way::changed});
  }
}

void XmlChanges::findSurroundings() {
  around_.resize(spans_.size());
  children_.resize(elements_);
  std::vector<Place> open;
  for (Place i = 0; i < elements_; ++i) {
    while (!open.empty() && spans_[open.back()].end <= spans_[i].begin) open.pop_back();
    if (!open.empty()) {
      around_[i] = open.back();
      children_[open.back()].push_back(i);
    }
    open.push_back(i);
  }
  // Attributes stand behind the begin of their element, and before that of the next one.
  Place element = 0;
  for (Place i = elements_; i < spans_.size(); ++i) {
    while (element + 1 < elements_ && spans_[element + 1].begin < spans_[i].begin) ++element;
    around_[i] = element;
  }
}

void XmlChanges::addChangesOf(Place place, const Owners& owners) {
  changes_.push_back({place, Way::removed});
  const bool several = isOneOfSeveral(spans_[place].path);
  if (several) changes_.push_back({place, Way::doubled});
  if (isLeaf(place)) changes_.push_back({place, Way::changed});
  const std::vector<Place>& siblings = children_[*around_[place]];
  const auto next = std::upper_bound(siblings.begin(), siblings.end(), place);
  if (several && next != siblings.end() && textOf(*next) != textOf(place))
    changes_.push_back({place, Way::swapped, *next});
  if (const auto owner = nextOwner(place, owners)) changes_.push_back({place, Way::moved, *owner});
}

/// What stands once below each owner moves to one that has none.
std::optional<Changes::Place> XmlChanges::nextOwner(Place place, const Owners& owners) const {
  constexpr std::size_t kTries = 50;
  const Place owner = *around_[place];
  const auto alike = owners.find(kindOfPlace(spans_[owner].path));
  if (alike == owners.end()) return std::nullopt;
  const std::vector<Place>& all = alike->second;
  const bool several = isOneOfSeveral(spans_[place].path);
  const std::string kind = kindOfPlace(spans_[place].path);
  std::size_t at = static_cast<std::size_t>(std::upper_bound(all.begin(), all.end(), owner) - all.begin());
  for (std::size_t tries = std::min(all.size(), kTries); tries > 0; --tries, ++at) {
    const Place candidate = all[at % all.size()];
    const Span& span = spans_[place];
    const bool inside = spans_[candidate].begin >= span.begin && spans_[candidate].end <= span.end;
    if (candidate != owner && !inside && (several || !hasChild(candidate, kind))) return candidate;
  }
  return std::nullopt;
}

bool XmlChanges::hasChild(Place owner, std::string_view kind) const {
  return std::any_of(children_[owner].begin(), children_[owner].end(),
                     [&](Place child) { return kindOfPlace(spans_[child].path) == kind; });
}

bool XmlChanges::isLeaf(Place place) const {
  return !spans_[place].isOneTag() && children_[place].empty();
}

std::string_view XmlChanges::textOf(Place place) const {
  return std::string_view(document_).substr(spans_[place].begin, spans_[place].end - spans_[place].begin);
}

std::string XmlChanges::without(Place place) const {
  return std::string(document_).erase(spans_[place].begin, spans_[place].end - spans_[place].begin);
}

std::string XmlChanges::at(std::size_t i) const {
  const Change& change = changes_[i];
  const Span& span = spans_[change.place];
  std::string text = document_;
  switch (change.way) {
    case Way::removed:
      return without(change.place);
    case Way::doubled:
      return text.insert(span.end, textOf(change.place));
    case Way::changed: {
      const std::size_t length = span.contentEnd - span.contentBegin;
      return text.replace(span.contentBegin, length,
                          otherValue(std::string_view(document_).substr(span.contentBegin, length)));
    }
    case Way::swapped: {
      const Span& next = spans_[change.other];
      return text.replace(next.begin, next.end - next.begin, textOf(change.place))
          .replace(span.begin, span.end - span.begin, textOf(change.other));
    }
    default: {
      const std::size_t target = spans_[change.other].contentEnd;
      if (target < span.end)
        return text.erase(span.begin, span.end - span.begin).insert(target, textOf(change.place));
      return text.insert(target, textOf(change.place)).erase(span.begin, span.end - span.begin);
    }
  }
}

/// Namespaces, the types of XML Schema, the empty instance behind a view's schema.
bool XmlChanges::isWriting(Place place) const {
  const std::string& path = spans_[place].path;
  const std::string kind = kindOfPlace(path);
  return path.find("@xmlns") != path.npos || path.ends_with("@xsi:type") ||
         (kind.find("/Schema/") != kind.npos && kind.find("/Schema/xs:") == kind.npos);
}

}  // namespace tav::test
