#include "lineage/affected.h"

#include "lineage/lineage_tree.h"

namespace tav {

std::vector<NodeId> affectedBy(const LineageGraph& graph, const std::vector<NodeId>& starts) {
  std::vector<bool> reached(graph.nodes().size());
  std::vector<bool> left(graph.nodes().size());  // whether the walk went on from there
  std::vector<NodeId> ahead;
  const auto goOnFrom = [&](NodeId id) {
    reached[id] = true;
    if (!left[id]) ahead.push_back(id);
    left[id] = true;
  };
  for (const NodeId id : starts) goOnFrom(id);
  while (!ahead.empty()) {
    const NodeId id = ahead.back();
    ahead.pop_back();
    for (const std::uint32_t place : graph.outOf(id)) {
      const LineageEdge& edge = graph.edges()[place];
      if (rowOf(edge.kind).sense == RelationSense::shows) continue;
      if (isLastStep(graph, edge))
        reached[edge.to] = true;
      else
        goOnFrom(edge.to);
    }
  }
  for (const NodeId id : starts) reached[id] = false;
  std::vector<NodeId> affected;
  for (NodeId id = 0; id < reached.size(); ++id)
    if (reached[id] && !isCopyKind(graph.node(id).kind)) affected.push_back(id);
  return affected;
}

}  // namespace tav
