#pragma once

// What lies behind or ahead of one node, as a tree for people and as a part of the graph for tools.

#include <cstdint>
#include <limits>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

enum class LineageDirection : std::uint8_t {
  upstream,    ///< to what a node comes from
  downstream,  ///< to what depends on it
};

inline constexpr std::uint32_t kUnlimitedDepth = std::numeric_limits<std::uint32_t>::max();

/// A place in the tree of a walk.
struct LineageTreeLine {
  enum class State : std::uint8_t {
    whole,  ///< what the node leads to follows
    above,  ///< the node stands above as well, with what it leads to
    below,  ///< or further below, nearer to the start
    cut,    ///< the node leads further, beyond the depth that was asked for
  };
  NodeId node;
  std::uint32_t depth;  ///< edges from the start
  /// The edge that leads here; null at the start, and for a part of the start.
  const LineageEdge* edge = nullptr;
  State state = State::whole;
};

/// Walks from a node along every edge of one direction, up to `depth` edges far. A node that is met again is
/// shown whole once, where it is nearest to the start, so that a walk ends whatever circles there are and
/// has no more lines than there are edges. When the walk starts at a table, dimension or the like, its parts
/// count as its next steps too. What a cube or perspective shows is followed on request (`members`).
std::vector<LineageTreeLine> lineageTree(const LineageGraph& graph, NodeId start, LineageDirection direction,
                                         std::uint32_t depth, bool members);

}  // namespace tav
