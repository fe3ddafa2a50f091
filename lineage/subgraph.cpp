#include "lineage/subgraph.h"

#include <algorithm>

#include "framework/std/text.h"
#include "lineage/node_search.h"

namespace tav {
namespace {

template <class T> void makeUnique(std::vector<T>& items) {
  std::sort(items.begin(), items.end(), std::less<>());
  items.erase(std::unique(items.begin(), items.end()), items.end());
}

void append(Subgraph& part, const Subgraph& more) {
  part.nodes.insert(part.nodes.end(), more.nodes.begin(), more.nodes.end());
  part.edges.insert(part.edges.end(), more.edges.begin(), more.edges.end());
  makeUnique(part.nodes);
  makeUnique(part.edges);
}

/// Takes out of `part` what is not in `other`.
void intersect(Subgraph& part, const Subgraph& other) {
  const auto isMissing = [](const auto& items) {
    return [&](const auto& item) {
      return !std::binary_search(items.begin(), items.end(), item, std::less<>());
    };
  };
  std::erase_if(part.nodes, isMissing(other.nodes));
  std::erase_if(part.edges, isMissing(other.edges));
}

/// Whether a node is in every picture of the whole; others are where something is related to them.
bool isTableOrMember(const LineageGraph& graph, NodeId id) {
  return graph.node(id).kind <= NodeKind::perspective;
}

Subgraph subgraphOfWalk(const LineageGraph& graph, std::string_view name, LineageDirection direction) {
  return subgraphOf(lineageTree(graph, findNode(graph, name, direction), shortened({direction})));
}

}  // namespace

Subgraph wholeGraph(const LineageGraph& graph) {
  Subgraph part;
  for (NodeId id = 0; id < graph.nodes().size(); ++id)
    if (isTableOrMember(graph, id) || !graph.into(id).empty() || !graph.outOf(id).empty())
      part.nodes.push_back(id);
  for (const LineageEdge& edge : graph.edges()) part.edges.push_back(&edge);
  return part;
}

Subgraph subgraphOf(const std::vector<LineageTreeLine>& lines) {
  Subgraph part;
  for (const LineageTreeLine& line : lines) {
    part.nodes.push_back(line.node);
    if (line.edge) part.edges.push_back(line.edge);
  }
  makeUnique(part.nodes);
  makeUnique(part.edges);
  return part;
}

Subgraph subgraphAround(const LineageGraph& graph, std::string_view from, std::string_view to) {
  if (from.empty() && to.empty()) return wholeGraph(graph);
  if (from.empty()) return subgraphOfWalk(graph, to, LineageDirection::upstream);
  Subgraph part = subgraphOfWalk(graph, from, LineageDirection::downstream);
  if (to.empty()) return part;
  const Subgraph sources = subgraphOfWalk(graph, to, LineageDirection::upstream);
  if (equalNames(from, to))
    append(part, sources);
  else
    intersect(part, sources);
  return part;
}

}  // namespace tav
