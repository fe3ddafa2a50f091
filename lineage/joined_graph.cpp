#include "lineage/joined_graph.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace tav {
JoinedGraph::JoinedGraph(const WalkGraph& graph)
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
    const WalkGraph& one = graph(model);
    for (NodeId node = 0; node < one.nodes().size(); ++node) {
      if (!one.isShared(node)) continue;
      const JoinedId id = offsets_[model] + node;
      const auto [known, isNew] = last.try_emplace(one.sharedKey(node), id);
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
  return graph(model).isShared(node) ? std::string_view() : std::string_view(models_[model].name);
}

namespace {

std::vector<JoinedGraph::Model> walked(const std::vector<JoinedModels::Model>& models) {
  std::vector<JoinedGraph::Model> result;
  result.reserve(models.size());
  for (const JoinedModels::Model& model : models) result.push_back({model.name, model.graph});
  return result;
}

}  // namespace

JoinedModels::JoinedModels(const LineageGraph& graph) : JoinedGraph(graph), graphs_{&graph} {}

JoinedModels::JoinedModels(const std::vector<Model>& models) : JoinedGraph(walked(models)) {
  graphs_.reserve(models.size());
  for (const Model& model : models) graphs_.push_back(model.graph);
}

}  // namespace tav
