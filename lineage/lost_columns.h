#pragma once

// Where the way back from a column, attribute or measure ends before it reaches a column of a source.

#include <string>

#include "lineage/lineage_graph.h"

namespace tav {

/// Why the sources of a node do not trace back to a column, in half a sentence: its data is entered in the
/// definition, a query or a calculated table gives it without reading a column, or the query that computes it
/// reads a file, web page or table, which is named.
std::string lostReason(const LineageGraph& graph, NodeId id);

/// Why an attribute without sources has none where its table is one that DAX computes; empty for all others.
std::string calculatedTableReason(const LineageGraph& graph, NodeId id);

}  // namespace tav
