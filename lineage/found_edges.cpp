// The edges that a lineage graph has beyond those of its model.

#include <string>
#include <unordered_map>
#include <utility>

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

/// Where a measure group or table has several partitions, one node stands for all, so that their number does
/// not multiply with that of what they fill.
void GraphBuilder::addPartitions() {
  const Details* details = graph_.details_;
  if (!details) return;
  std::unordered_map<NodeId, NodeId> shared;  // by measure group or table: what stands for its partitions
  for (const DetailRelation& relation : details->relations()) {
    if (relation.kind != EdgeKind::fills) continue;
    const NodeId partition = graph_.itemNodes_[relation.from];
    const NodeId owner = graph_.itemNodes_[relation.to];
    const auto [filler, isFirst] = fillers_.try_emplace(owner, partition);
    if (isFirst) continue;
    const auto [every, isSecond] = shared.try_emplace(owner, static_cast<NodeId>(graph_.nodes_.size()));
    if (isSecond) {
      graph_.nodes_.push_back({NodeKind::everyPartition, owner, nullptr, "Partitions"});
      addEdge(std::exchange(filler->second, every->second), every->second, EdgeKind::loads, true);
    }
    addEdge(partition, every->second, EdgeKind::loads, true);
  }
}

/// What a partition reads decides which rows there are, of all measures of its group and all columns of its
/// table.
void GraphBuilder::addFilledEdges() {
  if (fillers_.empty()) return;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    const LineageNode& node = graph_.nodes_[id];
    if (node.kind != NodeKind::measure && node.kind != NodeKind::attribute) continue;
    if (const auto filler = fillers_.find(node.owner); filler != fillers_.end())
      addEdge(filler->second, id, EdgeKind::loads, true);
  }
}

}  // namespace tav
