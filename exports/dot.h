#pragma once

#include <ostream>

#include "lineage/subgraph.h"

namespace tav {

/// Writes a part of a graph in the language of Graphviz: a box with rows for each table, dimension and
/// measure group, edges from row to row. Control characters are shown, passwords masked.
void writeDot(const WalkGraph& graph, const Subgraph& part, std::ostream& out);

}  // namespace tav
