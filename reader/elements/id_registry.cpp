#include "reader/elements/id_registry.h"

namespace tav {
namespace {

// No document can hold a NUL, so joined IDs are equal only when each of them is.
const std::string& keyOf(std::string& key, IdSpace space, std::string_view first, std::string_view second,
                         std::string_view id) {
  key.clear();
  key += static_cast<char>(space);
  (key += first) += '\0';
  (key += second) += '\0';
  return key += id;
}

const std::string& keyIn(std::string& key, IdSpace space, const IdScope& scope, std::string_view id) {
  switch (space) {
    case IdSpace::attribute:
    case IdSpace::relationship:
      return keyOf(key, space, scope.dimension, {}, id);
    case IdSpace::hierarchy:
      return scope.cubeDimension.empty() ? keyOf(key, space, scope.dimension, {}, id)
                                         : keyOf(key, space, scope.cube, scope.cubeDimension, id);
    case IdSpace::cubeDimension:
    case IdSpace::measureGroup:
    case IdSpace::measureGroupName:
    case IdSpace::kpi:
    case IdSpace::action:
    case IdSpace::perspective:
      return keyOf(key, space, scope.cube, {}, id);
    case IdSpace::measure:
    case IdSpace::aggregationDesign:
      return keyOf(key, space, scope.cube, scope.group, id);
    case IdSpace::miningColumn:
      return keyOf(key, space, scope.structure, {}, id);
    default:
      return keyOf(key, space, {}, {}, id);
  }
}

}  // namespace

void IdRegistry::add(IdSpace space, const IdScope& scope, std::string_view id, ItemId item) {
  items_.try_emplace(keyIn(key_, space, scope, id), item);
  // Measures can be named without their group.
  if (space == IdSpace::measure) items_.try_emplace(keyOf(key_, space, scope.cube, {}, id), item);
}

void IdRegistry::addCubeDimension(const IdScope& scope, std::string_view id, std::string_view dimensionId) {
  dimensionsOfCubes_.try_emplace(keyIn(key_, IdSpace::cubeDimension, scope, id), dimensionId);
}

std::optional<ItemId> IdRegistry::findExactly(IdSpace space, const IdScope& scope,
                                              std::string_view id) const {
  const auto found = items_.find(keyIn(key_, space, scope, id));
  return found == items_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string_view> IdRegistry::dimensionOf(const IdScope& scope) const {
  const auto found = dimensionsOfCubes_.find(keyIn(key_, IdSpace::cubeDimension, scope, scope.cubeDimension));
  return found == dimensionsOfCubes_.end() ? std::nullopt : std::optional(found->second);
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
  const auto dimension = dimensionOf(scope);
  if (!dimension) return std::nullopt;
  IdScope database;
  database.dimension = *dimension;
  return findExactly(space == IdSpace::attribute ? space : IdSpace::hierarchy, database, id);
}

ItemId IdRegistry::findInDimension(const IdScope& scope, std::string_view attributeId) const {
  const auto dimensionId = dimensionOf(scope);
  if (!dimensionId) return kNoItem;
  IdScope database;
  database.dimension = *dimensionId;
  return findExactly(IdSpace::attribute, database, attributeId).value_or(kNoItem);
}

const TAVModelObject* IdRegistry::findCubeAttribute(const IdScope& scope, std::string_view attributeId) {
  const ItemId attributeItem = findInDimension(scope, attributeId);
  const auto cubeItem = findExactly(IdSpace::cubeDimension, scope, scope.cubeDimension);
  if (attributeItem == kNoItem || !cubeItem) return nullptr;
  const auto* attribute = as<TAVFeature>(details_.item(attributeItem).object);
  const auto* alias = as<TAVAliasClassifier>(details_.item(*cubeItem).object);
  if (!attribute || !alias) return nullptr;
  // A cube shows all attributes of a dimension in their order.
  const std::int32_t position = attribute->position;
  const TAVFeature* shown = position < alias->features.getCount() ? alias->features[position] : nullptr;
  return shown && shown->getName() == attribute->getName() ? shown : nullptr;
}

}  // namespace tav
