#pragma once

// What differs between two models.

#include <string>
#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// One thing of an object that is not as it was: an attribute of its class, a user property, its data type,
/// the levels of a hierarchy. An empty text stands for none.
struct Change {
  std::string what;
  std::string before;
  std::string after;

  friend bool operator==(const Change&, const Change&) = default;
};

/// Something that is in one model only. What it is made of is not listed by itself.
struct LoneItem {
  std::string kind;
  std::string name;  ///< the qualified name
  std::string path;
  std::size_t parts = 0;  ///< how many columns, attributes or measures it comes with
};

/// Something that is in both models.
struct ChangedItem {
  std::string kind;
  std::string before;  ///< the qualified name in the old model; equal to `name` unless it was renamed
  std::string name;
  std::string path;  ///< in the new model
  std::vector<Change> changes;
  std::vector<std::string> newSources;   ///< what it depends on now and did not before
  std::vector<std::string> lostSources;  ///< and the other way round
};

struct ModelDiff {
  std::string oldName;
  std::string newName;
  std::vector<LoneItem> added;
  std::vector<LoneItem> removed;
  std::vector<ChangedItem> renamed;  ///< with what else changed about them
  std::vector<ChangedItem> changed;

  [[nodiscard]] bool empty() const noexcept {
    return added.empty() && removed.empty() && renamed.empty() && changed.empty();
  }
};

/// Compares by name: two objects are one when they have the same kind, name and owner. Of the others, a pair
/// of the same kind and owner is taken for one that was renamed when nothing else in the models has the same
/// sources, parts and expression. Servers and databases are compared once, as data sources: moving a
/// model to another server changes no lineage. Copies that cubes hold of dimensions and measures are not
/// told of where they only follow what they copy. Linear in the size of the models but for sorting.
ModelDiff compareModels(const LineageGraph& before, const LineageGraph& after);

}  // namespace tav
