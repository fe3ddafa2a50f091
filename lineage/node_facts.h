#pragma once

#include <vector>

#include "lineage/differences.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// What is said about the nodes of one graph beside their names, relations and expressions: attributes of
/// the model's objects, properties, data types, settings of the details.
std::vector<Change> compareFacts(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                 NodeId now);

/// The expressions of two nodes, if they differ.
std::vector<Change> compareExpressions(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                       NodeId now);

/// Names without a source that are new or gone; those that break an expression are in `broken`.
struct OpenNameChanges {
  std::vector<Change> changes;
  std::vector<OpenNameText> broken;
};
/// `old` may be kNoNode, for a node that is new.
OpenNameChanges compareOpenNames(const LineageGraph& before, NodeId old, const LineageGraph& after,
                                 NodeId now);

}  // namespace tav
