#include "lineage/affected.h"

namespace tav {

std::vector<NodeId> affectedBy(const LineageGraph& graph, const std::vector<NodeId>& starts) {
  std::vector<bool> reached(graph.nodes().size());
  std::vector<NodeId> ahead;
  const auto reach = [&](NodeId id) {
    if (reached[id]) return;
    reached[id] = true;
    ahead.push_back(id);
  };
  for (const NodeId id : starts) reach(id);
  while (!ahead.empty()) {
    const NodeId id = ahead.back();
    ahead.pop_back();
    for (const std::uint32_t place : graph.outOf(id))
      if (const LineageEdge& edge = graph.edges()[place]; rowOf(edge.kind).sense != RelationSense::shows)
        reach(edge.to);
  }
  for (const NodeId id : starts) reached[id] = false;
  std::vector<NodeId> affected;
  for (NodeId id = 0; id < reached.size(); ++id)
    if (reached[id] && !isCopyKind(graph.node(id).kind)) affected.push_back(id);
  return affected;
}

}  // namespace tav
