// The edges that a lineage graph has beyond those of its model.

#include <string>
#include <unordered_map>

#include "lineage/graph_builder.h"

namespace tav {

/// A cube lists the measures that it links by name only: they come from its linked groups. Where the name
/// does not tell from which, the measure says so.
void GraphBuilder::addLinkedMeasureEdges() {
  const auto key = [&](NodeId id, std::string_view group) {
    return std::to_string(graph_.cubeOf(id))
        .append("/")
        .append(group)
        .append(1, '\0')
        .append(graph_.nodes_[id].rawName);
  };
  std::unordered_map<std::string, NodeId> linked;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    if (graph_.nodes_[id].kind != NodeKind::linkedMeasure) continue;
    linked.try_emplace(key(id, {}), id);
    linked.try_emplace(key(id, graph_.nodes_[graph_.nodes_[id].owner].rawName), id);
  }
  if (linked.empty()) return;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    const auto* measure = as<TAVMeasure>(graph_.nodes_[id].object);
    if (!measure || graph_.nodes_[id].kind != NodeKind::cubeMeasure || measure->getDestinationOfFeatureMap())
      continue;
    if (const auto source = linked.find(key(id, measure->linkedGroup)); source != linked.end())
      addEdge(source->second, id, EdgeKind::direct, true);
  }
}

}  // namespace tav
