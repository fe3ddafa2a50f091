#pragma once

#include <string>

#include "lineage/lineage_graph.h"

namespace tav {

/// Under which key a node is one with nodes of other models: of a table or column of a database whose server
/// the model names, its path without letter case; of what a model over another model reads, that model the
/// names in it and its server. Empty for everything else, which is known within its model
/// alone, and for a column whose table a query does not tell.
std::string meetingKey(const LineageGraph& graph, NodeId id);

}  // namespace tav
