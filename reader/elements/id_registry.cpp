#include "reader/elements/id_registry.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace tav {
namespace {

/// Whether two texts are one in memory, as IDs of one scope are.
bool areSame(std::string_view a, std::string_view b) noexcept {
  return a.data() == b.data() && a.size() == b.size();
}

}  // namespace

IdRegistry::Place IdRegistry::placeOf(IdSpace space, std::string_view outer, std::string_view inner) {
  KnownPlace& last = lastPlaces_[static_cast<std::size_t>(space)];
  if (last.isKnown && areSame(last.outer, outer) && areSame(last.inner, inner)) return last.place;
  // No document can hold a NUL, so joined IDs are equal only when each of them is.
  std::string key(1, static_cast<char>(space));
  ((key += outer) += '\0') += inner;
  const auto number = static_cast<Place>(places_.size());
  last = {outer, inner, places_.try_emplace(std::move(key), number).first->second, true};
  return last.place;
}

IdRegistry::Place IdRegistry::placeIn(IdSpace space, const IdScope& scope) {
  switch (space) {
    case IdSpace::attribute:
    case IdSpace::relationship:
      return placeOf(space, scope.dimension, {});
    case IdSpace::hierarchy:
      return scope.cubeDimension.empty() ? placeOf(space, scope.dimension, {})
                                         : placeOf(space, scope.cube, scope.cubeDimension);
    case IdSpace::cubeDimension:
    case IdSpace::measureGroup:
    case IdSpace::measureGroupName:
    case IdSpace::kpi:
    case IdSpace::action:
    case IdSpace::perspective:
      return placeOf(space, scope.cube, {});
    case IdSpace::measure:
    case IdSpace::aggregationDesign:
      return placeOf(space, scope.cube, scope.group);
    case IdSpace::miningColumn:
      return placeOf(space, scope.structure, {});
    default:
      return placeOf(space, {}, {});
  }
}

void IdRegistry::add(IdSpace space, const IdScope& scope, std::string_view id, ItemId item) {
  items_.try_emplace({placeIn(space, scope), id}, item);
  // Measures can be named without their group.
  if (space == IdSpace::measure) items_.try_emplace({placeOf(space, scope.cube, {}), id}, item);
}

void IdRegistry::addCubeDimension(const IdScope& scope, std::string_view id, std::string_view dimensionId) {
  const auto item = findExactly(IdSpace::cubeDimension, scope, id);
  const auto* alias = item ? as<TAVAliasClassifier>(details_.item(*item).object) : nullptr;
  shown_.try_emplace({placeIn(IdSpace::cubeDimension, scope), id}, Shown{dimensionId, alias});
}

std::optional<ItemId> IdRegistry::findExactly(IdSpace space, const IdScope& scope, std::string_view id) {
  const auto found = items_.find({placeIn(space, scope), id});
  return found == items_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<ItemId> IdRegistry::findIn(std::string_view dimensionId, IdSpace space, std::string_view id) {
  const auto found = items_.find({placeOf(space, dimensionId, {}), id});
  return found == items_.end() ? std::nullopt : std::optional(found->second);
}

const IdRegistry::Shown* IdRegistry::shownIn(const IdScope& scope) {
  if (lastShown_ && areSame(lastCube_, scope.cube) && areSame(lastDimension_, scope.cubeDimension))
    return lastShown_;
  const auto found = shown_.find({placeIn(IdSpace::cubeDimension, scope), scope.cubeDimension});
  if (found == shown_.end()) return nullptr;
  lastCube_ = scope.cube;
  lastDimension_ = scope.cubeDimension;
  return lastShown_ = &found->second;
}

std::optional<ItemId> IdRegistry::find(IdSpace space, const IdScope& scope, std::string_view id) {
  const bool ofDimension =
      space == IdSpace::attribute || space == IdSpace::hierarchy || space == IdSpace::originalHierarchy;
  if (!ofDimension || scope.cubeDimension.empty()) return findExactly(space, scope, id);
  if (space == IdSpace::attribute) {
    if (const TAVModelObject* attribute = findCubeAttribute(scope, id)) return details_.itemOf(*attribute);
  } else if (space == IdSpace::hierarchy) {
    if (const auto listed = findExactly(space, scope, id)) return listed;
  }
  const Shown* shown = shownIn(scope);
  if (!shown) return std::nullopt;
  return findIn(shown->dimensionId, space == IdSpace::attribute ? space : IdSpace::hierarchy, id);
}

bool IdRegistry::hasPlace(IdSpace space, const IdScope& scope) {
  const auto isThere = [&](IdSpace outer, std::string_view id) {
    return id.empty() || findExactly(outer, scope, id).has_value();
  };
  switch (space) {
    case IdSpace::attribute:
    case IdSpace::hierarchy:
    case IdSpace::originalHierarchy:
    case IdSpace::relationship:
      if (scope.cubeDimension.empty()) return isThere(IdSpace::dimension, scope.dimension);
      return shownIn(scope) && isThere(IdSpace::dimension, shownIn(scope)->dimensionId);
    case IdSpace::measure:
    case IdSpace::aggregationDesign:
      if (!scope.group.empty()) return isThere(IdSpace::measureGroup, scope.group);
      return isThere(IdSpace::cube, scope.cube);
    case IdSpace::cubeDimension:
    case IdSpace::measureGroup:
    case IdSpace::measureGroupName:
    case IdSpace::kpi:
    case IdSpace::action:
    case IdSpace::perspective:
      return isThere(IdSpace::cube, scope.cube);
    case IdSpace::miningColumn:
      return isThere(IdSpace::miningStructure, scope.structure);
    default:
      return true;
  }
}

IdRegistry::Place IdRegistry::shownPlace(IdSpace space, const IdScope& scope) {
  const bool ofDimension = space == IdSpace::attribute || space == IdSpace::hierarchy;
  const Shown* shown = ofDimension && !scope.cubeDimension.empty() ? shownIn(scope) : nullptr;
  return shown ? placeOf(space, shown->dimensionId, {}) : placeIn(space, scope);
}

std::string_view IdRegistry::nearest(IdSpace space, const IdScope& scope, std::string_view id) {
  if (spellings_.empty()) fillSpellings();
  const auto known = spellings_.find(shownPlace(space, scope));
  return known == spellings_.end() ? std::string_view() : known->second.nearest(id);
}

/// In the order of the document, as of two IDs that come equally near the first counts.
void IdRegistry::fillSpellings() {
  std::vector<std::pair<ItemId, Key>> inOrder;
  inOrder.reserve(items_.size());
  for (const auto& [key, item] : items_) inOrder.emplace_back(item, key);
  std::sort(inOrder.begin(), inOrder.end(), [](const auto& a, const auto& b) {
    return std::tie(a.first, a.second.place, a.second.id) < std::tie(b.first, b.second.place, b.second.id);
  });
  for (const auto& [item, key] : inOrder) spellings_[key.place].add(key.id);
}

ItemId IdRegistry::findInDimension(const IdScope& scope, std::string_view attributeId) {
  const Shown* shown = shownIn(scope);
  return shown ? findIn(shown->dimensionId, IdSpace::attribute, attributeId).value_or(kNoItem) : kNoItem;
}

const TAVModelObject* IdRegistry::findCubeAttribute(const IdScope& scope, std::string_view attributeId) {
  const Shown* shown = shownIn(scope);
  if (!shown || !shown->alias) return nullptr;
  const auto item = findIn(shown->dimensionId, IdSpace::attribute, attributeId);
  const auto* attribute = item ? as<TAVFeature>(details_.item(*item).object) : nullptr;
  if (!attribute) return nullptr;
  // A cube shows all attributes of a dimension in their order.
  const std::int32_t position = attribute->position;
  const auto& features = shown->alias->features;
  const TAVFeature* own = position < features.getCount() ? features[position] : nullptr;
  return own && own->getName() == attribute->getName() ? own : nullptr;
}

}  // namespace tav
