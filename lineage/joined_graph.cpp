#include "lineage/joined_graph.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "framework/std/text.h"

namespace tav {
namespace {

/// The server of a connection that names none (see DatabaseAddress).
constexpr std::string_view kUnknownServer = "connection://";

/// What a shared node is recognised by: its address and names without letter case.
std::string sharedKey(const LineageGraph& graph, NodeId id) {
  const LineageNode& node = graph.node(id);
  const NodeId table = node.kind == NodeKind::databaseColumn ? node.owner : id;
  const DatabaseAddress& address = *graph.database(id);
  std::string key;
  for (const std::string_view part : {std::string_view(address.server), std::string_view(address.database),
                                      graph.rawSchema(table), graph.node(table).rawName})
    key.append(foldedName(part)).append(1, '\0');
  return table == id ? key : key.append(foldedName(node.rawName));
}

}  // namespace

bool isShared(const LineageGraph& graph, NodeId id) {
  const DatabaseAddress* address = graph.database(id);
  if (!address || !address->named || address->server.starts_with(kUnknownServer)) return false;
  // A column of an unknown table is nobody else's.
  return graph.node(id).kind == NodeKind::databaseTable || graph.node(id).owner != kNoNode;
}

JoinedGraph::JoinedGraph(const LineageGraph& graph)
    : models_{{{}, &graph}}, namesModels_(false), offsets_{0, static_cast<JoinedId>(graph.nodes().size())} {}

JoinedGraph::JoinedGraph(std::vector<Model> models)
    : models_(std::move(models)), namesModels_(true), offsets_{0} {
  for (const Model& model : models_)
    offsets_.push_back(offsets_.back() + static_cast<JoinedId>(model.graph->nodes().size()));
  joinShared();
}

void JoinedGraph::joinShared() {
  first_.resize(size());
  std::iota(first_.begin(), first_.end(), JoinedId{0});
  next_.assign(size(), kNone);
  std::unordered_map<std::string, JoinedId> last;
  for (std::uint32_t model = 0; model < models_.size(); ++model) {
    const LineageGraph& one = graph(model);
    for (NodeId node = 0; node < one.nodes().size(); ++node) {
      if (!isShared(one, node)) continue;
      const JoinedId id = offsets_[model] + node;
      const auto [known, isNew] = last.try_emplace(sharedKey(one, node), id);
      if (isNew) continue;
      first_[id] = first_[known->second];
      next_[known->second] = id;
      known->second = id;
    }
  }
}

JoinedGraph::Place JoinedGraph::placeOf(JoinedId id) const noexcept {
  const auto behind = std::upper_bound(offsets_.begin(), offsets_.end(), id);
  const auto model = static_cast<std::uint32_t>(behind - offsets_.begin() - 1);
  return {model, id - offsets_[model]};
}

std::string_view JoinedGraph::modelName(JoinedId id) const {
  if (!namesModels_) return {};
  const auto [model, node] = placeOf(id);
  return isShared(graph(model), node) ? std::string_view() : std::string_view(models_[model].name);
}

}  // namespace tav
