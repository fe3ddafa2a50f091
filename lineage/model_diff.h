#pragma once

// What differs between two definitions: their models, and what their details say beside them.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/details/detailed_model.h"
#include "lineage/differences.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// Groups of differences, in the order in which they are told.
enum class DiffGroup : std::uint8_t {
  broken,
  lostLineage,
  changed,
  added,
  removed,
  renamed,
  moved,
  reordered
};
inline constexpr std::size_t kDiffGroupCount = static_cast<std::size_t>(DiffGroup::reordered) + 1;
/// The name of a group on a command line, "lost-lineage", and as a title, "Lost lineage".
std::string_view diffGroupName(DiffGroup group) noexcept;
std::string_view diffGroupTitle(DiffGroup group) noexcept;
std::optional<DiffGroup> diffGroupOf(std::string_view name) noexcept;

struct ModelDiff {
  static constexpr std::size_t kListed = 10;

  std::string oldName;
  std::string newName;
  std::vector<std::string> notes;  ///< what was not compared; sentences without their ends
  std::vector<BrokenName> broken;
  std::vector<DiffObject> lostLineage;  ///< traced back to a database column, and does no longer
  std::vector<ChangedObjects> changed;
  std::vector<DiffObject> added;
  std::vector<DiffObject> removed;
  std::vector<ChangedObjects> renamed;  ///< one each, with what else changed about it
  std::vector<ChangedObjects> moved;
  std::vector<Reordered> reordered;
  /// What depends on anything that differs and is not told of itself: how many objects, and the first of
  /// them.
  std::size_t affected = 0;
  std::vector<DiffObject> firstAffected;

  [[nodiscard]] std::size_t count(DiffGroup group) const noexcept;
  [[nodiscard]] bool empty() const noexcept;
};

/// Two objects are one when they have the same kind, name and owner. Of the others, a pair is taken for one
/// that was renamed or moved as NodePairs says. What only follows is not told of: parts of what was added,
/// copies in cubes of what changed. Servers are compared once, as data sources: moving a model to another
/// server changes no lineage. Both graphs have details, or neither has. Linear in the size of the models but
/// for sorting.
ModelDiff compareModels(const LineageGraph& before, const LineageGraph& after);

/// The same for models, whose databases are called as `map` has them. Details are compared when both have
/// them, and the notes say when not.
ModelDiff compareModels(const DetailedModel& before, const DetailedModel& after, const AddressMap& map = {});

}  // namespace tav
