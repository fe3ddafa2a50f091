#pragma once

// What lies behind or ahead of one node, as a tree for people and as a part of the graph for tools.

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "lineage/joined_graph.h"

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
    cut,    ///< the node leads further, beyond what was asked for
  };
  JoinedId node;
  std::uint32_t depth;  ///< edges from the start
  /// The edge that leads here; null at the start, and for a part of the start.
  const LineageEdge* edge = nullptr;
  std::uint32_t model = 0;  ///< whose edge it is
  State state = State::whole;
};

/// Which edges a walk follows, and how far.
struct LineageWalk {
  LineageDirection direction = LineageDirection::upstream;
  std::uint32_t depth = kUnlimitedDepth;  ///< edges from the start
  bool members = false;   ///< also what cubes show, and perspectives show of what is not the start itself
  bool values = false;    ///< only edges along which values flow
  bool shortens = false;  ///< for people: what fills a measure or column is named, and not followed upstream
};

/// The same walk, as a text or a drawing has it.
[[nodiscard]] constexpr LineageWalk shortened(LineageWalk walk) noexcept {
  walk.shortens = true;
  return walk;
}

/// What a walk makes of an edge.
enum class Follow : std::uint8_t {
  no,
  yes,
  ifShown,  ///< if it says that a perspective shows the start, or a copy of it
};
/// What a walk makes of an edge of this kind to a node of kind `to`. What holds calculated measures or the
/// values of a KPI is fed by all that any of them names: between such wholes a walk would tell of ways that
/// no value takes.
Follow followOf(EdgeKind edge, bool isLoop, NodeKind to, const LineageWalk& walk) noexcept;
/// Whether a walk downstream names what an edge leads to and goes no further, and one upstream takes the edge
/// at its start only: partitions have an aggregation design, which is no matter of what they fill.
bool isLastStep(const WalkGraph& graph, const LineageEdge& edge) noexcept;
/// Whether a walk that starts at a node of this kind goes along what cubes and perspectives show.
bool startsWithMembers(NodeKind start) noexcept;

/// Walks from a node along the edges of one direction. A node that is met again is shown whole once, where it
/// is nearest to the start, so that a walk ends whatever circles there are and has no more lines than there
/// are edges. When the walk starts at a table, dimension or the like, its parts count as its next steps too.
std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, JoinedId start, const LineageWalk& walk);
/// The same from several nodes that differ, one tree behind the other; what is shown in one is not shown
/// again.
std::vector<LineageTreeLine> lineageTree(const JoinedGraph& graph, std::span<const JoinedId> starts,
                                         const LineageWalk& walk);

}  // namespace tav
