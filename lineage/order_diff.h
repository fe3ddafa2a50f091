#pragma once

#include <vector>

#include "lineage/differences.h"
#include "lineage/node_pairs.h"

namespace tav {

/// What stands in another order below its owner, of the kinds whose order means something. Only nodes that
/// both graphs have at the same owner count, so that nothing that was added or removed reorders the rest.
/// Copies stand as what they copy. n log n.
std::vector<Reordered> compareOrder(const LineageGraph& before, const LineageGraph& after,
                                    const NodePairs& pairs);

}  // namespace tav
