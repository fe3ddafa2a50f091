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
#include "lineage/lineage_graph.h"

namespace tav {

/// One thing of an object that is not as it was, in words, passwords masked.
struct Change {
  enum class About : std::uint8_t {
    setting,     ///< an attribute, property, data type or setting
    expression,  ///< the text that computes it
    relation,    ///< what it depends on in some way; `what` is the word of the relation: "keyed by"
    name,        ///< a name in its expression that has no source
  };
  About about = About::setting;
  std::string what;
  std::optional<std::string> before;  ///< nothing where it has none
  std::optional<std::string> after;
  bool onlyLayout = false;  ///< an expression differs in white space and comments alone
  bool hidden = false;      ///< it differs in what is masked

  friend bool operator==(const Change&, const Change&) = default;
};

struct DiffObject {
  NodeKind kind;
  std::string name;       ///< the qualified name, and the cube
  std::string path;       ///< in the new model; of what was removed in the old one
  std::string before;     ///< the name in the old model, where it was another one
  std::size_t parts = 0;  ///< of what is in one model only: how many columns, attributes or measures it has
};

/// Objects that are in both models and changed in the same way: a column, or all columns of a table that
/// comes from elsewhere now.
struct ChangedObjects {
  std::vector<DiffObject> objects;
  std::vector<Change> changes;
};

/// A name in an expression that nothing in the definition has, and that was not open before.
struct BrokenName {
  DiffObject object;
  std::string name;
  std::string note;  ///< the nearest spelling; may be empty
};

/// Things of one kind and owner that stand in another order.
struct Reordered {
  std::string kind;                ///< of the things, plural
  std::string owner;               ///< kind and name; empty for what stands by itself
  std::vector<std::string> moved;  ///< the fewest that explain it
};

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
  std::vector<std::string> notes;  ///< what was not compared, as sentences
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

/// The same for models. Details are compared when both have them, and the notes say when not.
ModelDiff compareModels(const DetailedModel& before, const DetailedModel& after);

}  // namespace tav
