#pragma once

// A part of a lineage graph that is shown by itself: around a node, between two, or all of it.

#include <string_view>
#include <vector>

#include "lineage/lineage_tree.h"

namespace tav {

/// Nodes in the order of the graph, and the edges among them that are shown, each once.
struct Subgraph {
  std::vector<NodeId> nodes;
  std::vector<const LineageEdge*> edges;
};

/// Everything, but of what only the details have, and of databases and their views as a whole, only what is
/// related to something.
Subgraph wholeGraph(const LineageGraph& graph);

/// What a walk went through.
Subgraph subgraphOf(const std::vector<LineageTreeLine>& lines);

/// What depends on `from`, what `to` comes from, or, with both, the ways between them; with the same name for
/// both, everything on either side of it. Names as findNode takes them; an empty one is not asked for.
Subgraph subgraphAround(const LineageGraph& graph, std::string_view from, std::string_view to);

}  // namespace tav
