#pragma once

// Which nodes trace back to a database column (see LineageGraph::tracedBack).

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Goes from what databases hold to everything that it feeds, each node once, so that circles end.
class TracedNodes {
 public:
  TracedNodes(const LineageGraph& graph, bool withFound)
      : graph_(graph), withFound_(withFound), reached_(graph.nodes().size()) {}

  std::vector<bool> run();

 private:
  /// A data source view, by its package.
  using View = const TAVNamespace*;

  void add(NodeId id);
  void spread();
  [[nodiscard]] bool givesRows(NodeId from, NodeId to);
  void addRowCounts(NodeId group);
  void addCountsOfUnknownTables();
  [[nodiscard]] std::unordered_map<NodeId, std::unordered_set<View>> viewsOfCubes() const;
  [[nodiscard]] bool hasTable(NodeId group) const;

  const LineageGraph& graph_;
  bool withFound_;
  std::vector<bool> reached_;
  std::vector<NodeId> waiting_;
  std::unordered_map<NodeId, std::unordered_set<std::string_view>>
      tablesOfExpression_;  // of calculated tables
};

}  // namespace tav
