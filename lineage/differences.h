#pragma once

// What two definitions differ in, piece by piece.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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
  std::string qualifiedName = {};  ///< without the cube
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

}  // namespace tav
