#include "lineage/role_names.h"

#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"

namespace tav {
namespace {

std::string key(NodeId cube, std::string_view name) {
  return std::to_string(cube) + '\0' + foldedName(name);
}

const TAVDimension* dimensionOf(const TAVAliasClassifier& alias) {
  const TAVClassifierMap* map = alias.getDestinationOfClassifierMap();
  return map ? as<TAVDimension>(map->sourceClassifiers.first()) : nullptr;
}

bool meansEveryLevel(std::string_view part) {
  const std::string folded = foldedName(part);
  return folded == "currentmember" || folded == "nextmember" || folded == "prevmember";
}

}  // namespace

void RoleNames::add(NodeId cube, std::string_view name, const TAVAliasClassifier& alias) {
  aliases_.try_emplace(key(cube, name), &alias);
}

std::vector<const TAVFeature*> RoleNames::find(NodeId cube, std::string_view name) {
  std::vector<const TAVFeature*> found;
  const std::vector<std::string> parts = splitDottedName(name);
  const auto alias = aliases_.find(key(cube, parts.front()));
  if (parts.size() < 2 || alias == aliases_.end()) return found;
  const TAVAliasClassifier& role = *alias->second;
  const TAVDimension* dimension = dimensionOf(role);
  const TAVHierarchy* hierarchy = dimension ? dimension->hierarchies.get(parts[1]) : nullptr;
  if (!hierarchy) {
    if (const TAVFeature* attribute = role.features.get(parts[1])) found.push_back(attribute);
    return found;
  }
  const auto take = [&](const TAVLevel* level) {
    const TAVDimensionAttribute* attribute = level ? keyAttributeOf(*level) : nullptr;
    const TAVFeature* shown = attribute ? role.features.get(attribute->getName()) : nullptr;
    if (shown) found.push_back(shown);
  };
  const std::string_view level = parts.size() > 2 ? std::string_view(parts[2]) : std::string_view();
  if (!meansEveryLevel(level)) {
    take(findLevel(*hierarchy, level));
  } else {
    for (const TAVHierarchyLevelAssociation& use : hierarchy->hierarchyLevelAssociations)
      take(use.level.get());
  }
  return found;
}

const TAVLevel* RoleNames::findLevel(const TAVHierarchy& hierarchy, std::string_view name) {
  const auto [place, isNew] = levels_.try_emplace(&hierarchy);
  if (isNew) {
    for (const TAVHierarchyLevelAssociation& use : hierarchy.hierarchyLevelAssociations)
      if (const TAVLevel* level = use.level.get())
        place->second.try_emplace(foldedName(level->getName()), level);
  }
  const auto level = place->second.find(foldedName(name));
  return level == place->second.end() ? nullptr : level->second;
}

}  // namespace tav
