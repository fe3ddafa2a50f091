#pragma once

// How the elements of a definition are read into the details: a row for every path that is read in a way of
// its own. A path without a row is read by what it holds: a text becomes a setting under its path, an element
// with a name or ID an item, and any other element gives its path to what it holds. Nothing is left out
// unless a row says so.

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/details/kinds.h"
#include "framework/details/passed_over.h"

namespace tav {

/// What a definition looks up by an ID, and within what.
enum class IdSpace : std::uint8_t {
  none,
  dataSource,
  view,
  dimension,
  attribute,          ///< of a dimension; of a cube's, where a dimension of a cube is spoken of
  hierarchy,          ///< the same
  originalHierarchy,  ///< the hierarchy of the dimension that a cube shows
  relationship,       ///< of a dimension
  cube,
  cubeDimension,      ///< of a cube
  measureGroup,       ///< of a cube
  measureGroupName,   ///< the same by its name
  measure,            ///< of a measure group, else of a cube
  aggregationDesign,  ///< of a measure group
  kpi,                ///< of a cube
  action,             ///< of a cube
  perspective,        ///< of a cube
  role,
  miningStructure,
  miningColumn,  ///< of a mining structure
  miningModel,
  assembly,
};
inline constexpr std::size_t kIdSpaceCount = static_cast<std::size_t>(IdSpace::assembly) + 1;

enum class Reading : std::uint8_t {
  byContent,        ///< as without a row
  item,             ///< an item of the details, or the object that the model made of it
  part,             ///< no item, whatever it holds
  fold,             ///< all that it holds is one setting
  namedFold,        ///< the same, and its label is in the name of that: many items say it alike
  attributeCopy,    ///< a fold, unless it repeats an attribute of a dimension
  source,           ///< what it holds is looked up where a linked object comes from
  reference,        ///< the ID of something
  expression,       ///< an MDX expression, and a setting
  query,            ///< an SQL query, the text of its item
  table,            ///< a table of the database, with what stands beside it
  target,           ///< an expression that may call a measure group by its name
  known,            ///< the model has it, or the row around it reads it
  connection,       ///< a setting of what no connection of the model will show
  relatedName,      ///< a setting, unless it is the name of the attribute beside it
  annotation,       ///< what a designer or another tool keeps
  calculationName,  ///< of a calculated member, as an expression, or of a set
  calculation,      ///< says more of what an MDX script defines
  passedOver,
};

struct ElementRule {
  std::string_view path;  ///< local names of elements, "@" in front of that of an attribute
  Reading reading = Reading::byContent;
  IdSpace space = IdSpace::none;                   ///< an item's own, or what a reference is looked up in
  ObjectKind kind = ObjectKind::other;             ///< of an item
  RelationKind relation = RelationKind::mentions;  ///< of references, expressions and of columns bound below
  /// From the item to its owner, or the other way round for permissions; none when it is `mentions`.
  RelationKind toOwner = RelationKind::mentions;
  PassedOver what = PassedOver::designerLayout;
};

namespace rule {

constexpr ElementRule item(std::string_view path, ObjectKind kind, IdSpace space = IdSpace::none,
                           RelationKind toOwner = RelationKind::mentions,
                           RelationKind columns = RelationKind::mentions) {
  return {path, Reading::item, space, kind, columns, toOwner};
}
constexpr ElementRule reference(std::string_view path, IdSpace space, RelationKind relation) {
  return {path, Reading::reference, space, ObjectKind::other, relation};
}
constexpr ElementRule expression(std::string_view path, RelationKind relation) {
  return {path, Reading::expression, IdSpace::none, ObjectKind::other, relation};
}
/// Columns that are bound somewhere below have that relation to the item.
constexpr ElementRule columns(std::string_view path, RelationKind relation, Reading reading = Reading::fold) {
  return {path, reading, IdSpace::none, ObjectKind::other, relation};
}
constexpr ElementRule read(std::string_view path, Reading reading) {
  return {path, reading};
}
constexpr ElementRule passedOver(std::string_view path, PassedOver what) {
  return {path,
          Reading::passedOver,
          IdSpace::none,
          ObjectKind::other,
          RelationKind::mentions,
          RelationKind::mentions,
          what};
}

}  // namespace rule

/// Rules for what stands below one path.
struct ElementRules {
  std::string_view below;  ///< empty for what may stand anywhere
  std::span<const ElementRule> rules;
};

extern const ElementRules kAnywhereRules;
extern const ElementRules kDatabaseRules;
extern const ElementRules kViewRules;
extern const ElementRules kDimensionRules;
extern const ElementRules kCubeRules;
extern const ElementRules kMeasureGroupRules;
extern const ElementRules kMiningRules;

/// All rules as a tree of names.
class RuleTree {
 public:
  using Node = std::uint32_t;

  /// The one tree, made when it is first asked for.
  static const RuleTree& get();

  /// The node of a database.
  [[nodiscard]] static Node root() noexcept { return kRoot; }
  /// The node of what has this name below `parent`; rules that hold anywhere come after those of a path.
  [[nodiscard]] Node child(Node parent, std::string_view name) const;
  [[nodiscard]] const ElementRule& rule(Node node) const noexcept { return *rules_[node]; }

 private:
  static constexpr Node kUnknown = 0;   // what has no rule
  static constexpr Node kAnywhere = 1;  // the parent of what may stand anywhere
  static constexpr Node kRoot = 2;

  struct Key {
    Node parent;
    std::string_view name;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const noexcept {
      return std::hash<std::string_view>()(key.name) ^ (std::size_t{key.parent} * 0x9E3779B97F4A7C15U);
    }
  };

  RuleTree();
  void add(const ElementRules& rules);
  Node addPath(Node from, std::string_view path);

  std::unordered_map<Key, Node, KeyHash> nodes_;
  std::vector<const ElementRule*> rules_;  // by node
};

}  // namespace tav
