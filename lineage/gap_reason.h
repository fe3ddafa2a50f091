#pragma once

#include <string>

#include "lineage/lineage_graph.h"

namespace tav {

/// Why a node does not trace back to a database column, in half a sentence that may name what it ends in.
std::string gapReason(const LineageGraph& graph, NodeId id);

/// What is known of a name that leads to no attribute or measure, in words: "not found; the nearest is ...".
std::string openNameWords(const OpenNameText& name);

}  // namespace tav
