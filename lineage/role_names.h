#pragma once

// What a name in an expression means when it begins with the name that a cube gives to a dimension.

#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/std/string.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// The rules are those for dimensions of the database: a hierarchy and a level of it, every level for
/// CurrentMember and its like, or else an attribute.
class RoleNames {
 public:
  /// Makes a dimension of `cube` findable by the name that the cube gives it; the first of equal names
  /// counts.
  void add(NodeId cube, std::string_view name, const TAVAliasClassifier& alias);
  /// The attributes of a cube's dimensions that `name` means in that cube; none when it means nothing.
  [[nodiscard]] std::vector<const TAVFeature*> find(NodeId cube, std::string_view name);

 private:
  using Levels = std::unordered_map<std::string, const TAVLevel*>;

  const TAVLevel* findLevel(const TAVHierarchy& hierarchy, std::string_view name);

  std::unordered_map<std::string, const TAVAliasClassifier*> aliases_;  // by cube and folded name
  std::unordered_map<const TAVHierarchy*, Levels> levels_;              // by folded name
};

}  // namespace tav
