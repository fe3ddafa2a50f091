#include "exports/boxes.h"

#include <unordered_map>
#include <unordered_set>

namespace tav {
namespace {

bool isRow(const LineageGraph& graph, NodeId id) {
  return graph.node(id).owner != kNoNode && !isClassifierKind(graph.node(id).kind);
}

NodeId boxOf(const LineageGraph& graph, NodeId id) {
  return isRow(graph, id) ? graph.node(id).owner : id;
}

std::uint64_t pairOf(NodeId from, NodeId to) {
  return (std::uint64_t{from} << 32U) | to;
}

}  // namespace

std::vector<Box> boxesOf(const LineageGraph& graph, const Subgraph& part) {
  std::vector<Box> boxes;
  std::unordered_map<NodeId, std::size_t> places;
  for (const NodeId id : part.nodes) {
    const NodeId box = boxOf(graph, id);
    const auto [place, isNew] = places.try_emplace(box, boxes.size());
    if (isNew) boxes.push_back({box, {}});
    if (box != id) boxes[place->second].rows.push_back(id);
  }
  return boxes;
}

std::vector<const LineageEdge*> edgesToDraw(const LineageGraph& graph, const Subgraph& part) {
  std::unordered_set<std::uint64_t> joined;
  for (const LineageEdge* edge : part.edges)
    if (edge->kind != EdgeKind::member && isRow(graph, edge->from) && isRow(graph, edge->to))
      joined.insert(pairOf(boxOf(graph, edge->from), boxOf(graph, edge->to)));
  std::vector<const LineageEdge*> edges;
  for (const LineageEdge* edge : part.edges) {
    if (edge->kind == EdgeKind::member) continue;
    const bool rows = isRow(graph, edge->from) && isRow(graph, edge->to);
    if (rows || (edge->from != edge->to && !joined.contains(pairOf(edge->from, edge->to))))
      edges.push_back(edge);
  }
  return edges;
}

}  // namespace tav
