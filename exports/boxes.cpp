#include "exports/boxes.h"

#include <unordered_map>
#include <unordered_set>

#include "framework/std/text.h"

namespace tav {
namespace {

bool isRow(const WalkGraph& graph, NodeId id) {
  const NodeKind kind = graph.node(id).kind;
  return graph.node(id).owner != kNoNode && !isClassifierKind(kind) && kind != NodeKind::perspective;
}

/// Levels of a hierarchy are rows of its dimension as it is one itself.
NodeId boxOf(const WalkGraph& graph, NodeId id) {
  while (isRow(graph, id)) id = graph.node(id).owner;
  return id;
}

/// Whether the rows of a cube say it already.
bool isSaidByBoxes(const WalkGraph& graph, const LineageEdge& edge) {
  return edge.kind == EdgeKind::member && graph.node(edge.to).kind != NodeKind::perspective;
}

std::uint64_t pairOf(NodeId from, NodeId to) {
  return (std::uint64_t{from} << 32U) | to;
}

/// More of a statement would make its box wider than a screen.
constexpr std::size_t kMostShown = 60;

}  // namespace

std::string boxText(const WalkGraph& graph, NodeId id, NodeId box) {
  const NodeId owner = graph.node(id).owner;
  std::string text = graph.name(id);
  if (text.size() > kMostShown) text = std::string(beginningOf(text, kMostShown)).append(" ...");
  return id == box || owner == box ? text : graph.name(owner) + " / " + text;
}

std::string_view edgeLabel(const WalkGraph& graph, const LineageEdge& edge) {
  switch (edge.kind) {
    case EdgeKind::aggregated:
      return graph.aggregation(edge.to);
    case EdgeKind::direct:
    case EdgeKind::computed:
    case EdgeKind::condition:
    case EdgeKind::member:
      return {};
    default:
      return rowOf(edge.kind).downstream;
  }
}

std::vector<Box> boxesOf(const WalkGraph& graph, const Subgraph& part) {
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

std::vector<const LineageEdge*> edgesToDraw(const WalkGraph& graph, const Subgraph& part) {
  std::unordered_set<std::uint64_t> joined;
  for (const LineageEdge* edge : part.edges)
    if (!isSaidByBoxes(graph, *edge) && isRow(graph, edge->from) && isRow(graph, edge->to))
      joined.insert(pairOf(boxOf(graph, edge->from), boxOf(graph, edge->to)));
  std::vector<const LineageEdge*> edges;
  for (const LineageEdge* edge : part.edges) {
    if (isSaidByBoxes(graph, *edge)) continue;
    const bool rows = isRow(graph, edge->from) && isRow(graph, edge->to);
    if (rows || (edge->from != edge->to && !joined.contains(pairOf(edge->from, edge->to))))
      edges.push_back(edge);
  }
  return edges;
}

}  // namespace tav
