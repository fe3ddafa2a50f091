#pragma once

// What nothing in a definition uses. Cubes and perspectives that show something do not use it, nor do the
// copies that they show it as; whether that is all that there is, is told.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Kinds that people speak of as one: tables, and the queries that stand for some.
struct UnusedGroup {
  std::string_view name;  ///< plural, for people and as they choose it: "tables"
  std::span<const NodeKind> kinds;
};

/// What can be unused, in the order in which it is told.
std::span<const UnusedGroup> unusedGroups() noexcept;

struct UnusedNode {
  NodeId node;
  bool hidden = false;
  /// The edges of the node and of its copies that are no use: to what shows it, or is related to it. Of those
  /// that lead the same way to the same node, one.
  std::vector<LineageEdge> shows;
  std::size_t parts =
      0;  ///< of a table or dimension, the columns or attributes, none of which is used either

  /// Whether people see it although nothing uses it.
  [[nodiscard]] bool isShown() const noexcept { return !hidden && !shows.empty(); }
};

/// The unused nodes of a group in the order of the model. Parts of what is unused as a whole are not told
/// again. Nodes that are marked in `alsoUsed`, unless that is empty, are used by something beyond the graph.
/// One pass over the nodes and edges.
std::vector<UnusedNode> findUnused(const LineageGraph& graph, const UnusedGroup& group,
                                   const std::vector<bool>& alsoUsed = {});

/// Whether anything in the definition uses a node, by node.
std::vector<bool> usedNodes(const LineageGraph& graph);

}  // namespace tav
