#pragma once

// Finding a node by what people call it.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lineage/lineage_tree.h"
#include "lineage/walk_graph.h"

namespace tav {

/// How well a node fits a name, best first.
enum class NameFit : std::uint8_t { path, qualified, ending, part, none };

struct NameMatch {
  NameFit fit;  ///< of all the nodes
  std::vector<NodeId> nodes;
};

/// The nodes that `name` means: those with this path, or else this qualified name, or else those whose
/// qualified name or path ends in these parts, or else whose name holds this text; letter case, of any
/// script, counts only where it decides; "/" is the path of the database. Where a name fits tables,
/// attributes, measures or the like as well as a hierarchy, role or partition, it means the former. Of a node
/// and its plain copies (a measure as cubes list it, a column as a view shows it) only one is meant: the
/// measure itself, and of columns the one that has more to tell in this direction. Several nodes are several
/// meanings; none, that nothing is called so. One pass over the nodes.
std::vector<NodeId> findNodes(const WalkGraph& graph, std::string_view name, LineageDirection direction);
/// The same, and how well they fit.
NameMatch matchNodes(const WalkGraph& graph, std::string_view name, LineageDirection direction);

/// As many names are offered for one that nothing has.
inline constexpr std::size_t kNearest = 5;

/// How near other names are to one in spelling, letter case aside.
class NameDistance {
 public:
  explicit NameDistance(std::string_view name);

  /// The number of characters to insert, remove or replace; null for a name that is nowhere near.
  [[nodiscard]] std::optional<std::size_t> to(std::string_view name);

 private:
  std::u32string wanted_;
  std::size_t limit_;
  std::vector<std::size_t> row_;
};

struct NearNode {
  std::size_t distance;  ///< see NameDistance
  NodeId node;
};

/// The nodes whose names are nearest to `name` in spelling, at most `count`, the nearest first; those that
/// are nowhere near are left out.
std::vector<NearNode> nearestNodes(const WalkGraph& graph, std::string_view name, std::size_t count);

/// What messages call a node: its kind and path.
std::string nodeText(const WalkGraph& graph, NodeId id);
/// The end of a message that lists nodes, each on a line of its own, a long list cut short.
std::string nodeListText(const std::vector<std::string>& nodes);

/// The one node that `name` means. Throws Message::ambiguousName, which lists the nodes that it may mean,
/// or Message::unknownName with the nearest ones.
NodeId findNode(const WalkGraph& graph, std::string_view name, LineageDirection direction);

/// The names by which nodes are found again: what findNode takes for exactly that node, in either direction.
class NodeNames {
 public:
  /// One pass over the nodes. The graph must live longer.
  explicit NodeNames(const WalkGraph& graph);

  /// The qualified name where it means the node alone, otherwise the path. The latter does not find the node
  /// where another has the same, or where it holds a password or a control character.
  [[nodiscard]] std::string nameOf(NodeId id) const;
  /// Whether the qualified name means the node alone.
  [[nodiscard]] bool isUnique(NodeId id) const;

 private:
  /// As many nodes of one name are compared at most; where more have it, paths tell them apart.
  static constexpr std::size_t kCompared = 64;

  [[nodiscard]] bool means(const std::string& name, NodeId id) const;

  const WalkGraph& graph_;
  std::unordered_map<std::string, std::vector<NodeId>> byName_;  // by name, letter case folded
};

}  // namespace tav
