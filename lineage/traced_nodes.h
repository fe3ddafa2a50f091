#pragma once

// Which nodes trace back to a database column (see LineageGraph::tracedBack).

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Goes from what databases hold, and from counts of rows, which have no column by nature, to everything that
/// they feed, each node once, so that circles end.
class TracedNodes {
 public:
  explicit TracedNodes(const LineageGraph& graph) : graph_(graph), reached_(graph.nodes().size()) {}

  std::vector<bool> run();

 private:
  [[nodiscard]] bool isSource(NodeId id) const;
  void add(NodeId id);
  void spread();
  [[nodiscard]] bool givesRows(NodeId from, NodeId to);

  const LineageGraph& graph_;
  std::vector<bool> reached_;
  std::vector<NodeId> waiting_;
  std::unordered_map<NodeId, std::unordered_set<std::string_view>>
      tablesOfExpression_;  // of calculated tables
};

}  // namespace tav
