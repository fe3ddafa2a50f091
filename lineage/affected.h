#pragma once

#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// The nodes that depend on any of `starts`, not those themselves: over all edges but those by which cubes
/// and perspectives show something, copies left out. In the order of the nodes; linear.
std::vector<NodeId> affectedBy(const LineageGraph& graph, const std::vector<NodeId>& starts);

}  // namespace tav
