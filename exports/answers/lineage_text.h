#pragma once

// What trace and impact print: a tree for people, or the part of the graph for tools.

#include <ostream>

#include "lineage/lineage_tree.h"

namespace tav {

struct LineageQuestion {
  NodeId start;
  LineageWalk walk;
};

/// A line for each place of the tree, expressions indented below what they compute, and at the end what shows
/// it: cubes and perspectives. Safe for a terminal; passwords are masked.
void writeLineageText(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out);

/// The part of the graph as a drawing (see exports/dot.h).
void writeLineageDot(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out);

/// One JSON document: `{"format":"xmla-lineage/1","direction":...,"start":ID,"nodes":[...],"edges":[...]}`,
/// each node and edge of the walk once.
void writeLineageJson(const LineageGraph& graph, const LineageQuestion& question, std::ostream& out);

}  // namespace tav
