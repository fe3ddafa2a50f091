#include "lineage/joined_use.h"

#include <algorithm>

#include "lineage/unused.h"

namespace tav {
namespace {

bool isView(NodeKind kind) {
  return kind == NodeKind::viewTable || kind == NodeKind::namedQuery || kind == NodeKind::viewColumn ||
         kind == NodeKind::computedColumn;
}

}  // namespace

JoinedUse::JoinedUse(const JoinedModels& graph) : graph_(graph) {
  if (graph.models().size() < 2) return;
  users_.resize(graph.size());
  for (std::uint32_t model = 0; model < graph.models().size(); ++model) {
    const LineageGraph& one = graph.whole(model);
    const std::vector<bool> used = usedNodes(one);
    for (const LineageEdge& edge : one.edges()) {
      if (!one.isShared(edge.from) || edge.from == edge.to) continue;
      // A view that reads something uses it no more than it is used itself.
      if (isView(one.node(edge.to).kind) && !used[edge.to]) continue;
      Users& users = users_[graph.idOf(model, edge.from)];
      if (users.first == JoinedGraph::kNoModel)
        users.first = model;
      else if (users.first != model)
        users.second = model;
    }
  }
}

std::vector<bool> JoinedUse::usedBeside(std::uint32_t model) const {
  if (users_.empty()) return {};
  const LineageGraph& one = graph_.whole(model);
  std::vector<bool> used(one.nodes().size());
  for (const LineageEdge& edge : one.edges())
    if (edge.kind == EdgeKind::direct && one.isShared(edge.from) && isUsedBeside(model, edge.from))
      used[edge.to] = true;
  // What a model over this one reads.
  for (NodeId node = 0; node < one.nodes().size(); ++node)
    if (!one.isShared(node) && isUsedBeside(model, node)) used[node] = true;
  return used;
}

bool JoinedUse::isUsedBeside(std::uint32_t model, NodeId node) const {
  const Users& users = users_[graph_.idOf(model, node)];
  return (users.first != JoinedGraph::kNoModel && users.first != model) ||
         users.second != JoinedGraph::kNoModel;
}

}  // namespace tav
