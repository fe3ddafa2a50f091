#pragma once

// What a drawing of lineage is made of: boxes with rows. A box is a table, a dimension, a measure group; its
// rows are the columns, attributes and measures of it that the drawing shows.

#include <string>
#include <string_view>
#include <vector>

#include "lineage/subgraph.h"

namespace tav {

struct Box {
  NodeId node;  ///< its title; what stands by itself and has no owner is a box without rows
  std::vector<NodeId> rows;
};

/// What stands in a box for its title or one of its rows: the name, behind that of its owner where that is a
/// row as well. Long statements are cut.
std::string boxText(const WalkGraph& graph, NodeId id, NodeId box);

/// What is written at an edge: how a measure is added up, or how the one names the other. Empty for those
/// that the look of the line tells.
std::string_view edgeLabel(const WalkGraph& graph, const LineageEdge& edge);

/// The boxes of a part of a graph in the order of the graph, those of owners that are not in the part
/// included.
std::vector<Box> boxesOf(const WalkGraph& graph, const Subgraph& part);

/// The edges that say more than the boxes do: what a cube shows stands in it as a row, and that a table
/// feeds a dimension is said by the edges between their rows where there are any.
std::vector<const LineageEdge*> edgesToDraw(const WalkGraph& graph, const Subgraph& part);

}  // namespace tav
