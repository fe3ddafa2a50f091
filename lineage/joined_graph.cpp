#include "lineage/joined_graph.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>
#include <unordered_set>

#include "framework/std/text.h"

namespace tav {
namespace {

using PartIds = std::unordered_map<std::string, JoinedId>;

/// What is read of other models: the first of its twins, by its key in that model, and the names of the
/// models. An id is kNone where models read it from several servers, so that nobody can tell which is meant.
struct PartsRead {
  PartIds ids;
  std::unordered_set<std::string> models;
};

PartsRead partsRead(const JoinedGraph& joined) {
  PartsRead read;
  for (std::uint32_t model = 0; model < joined.models().size(); ++model) {
    const WalkGraph& graph = joined.graph(model);
    for (NodeId node = 0; node < graph.nodes().size(); ++node) {
      const std::string_view name = graph.readModel(node);
      if (name.empty()) continue;
      read.models.insert(foldedName(name));
      const JoinedId first = joined.idOf(model, node);
      const auto [known, isNew] = read.ids.try_emplace(std::string(partKeyIn(graph.sharedKey(node))), first);
      if (known->second != first) known->second = JoinedGraph::kNone;
    }
  }
  return read;
}

/// The models of these names, where one alone is called so.
std::vector<std::uint32_t> modelsCalled(const JoinedGraph& joined,
                                        const std::unordered_set<std::string>& names) {
  std::unordered_map<std::string, std::uint32_t> found;
  for (std::uint32_t model = 0; !names.empty() && model < joined.models().size(); ++model) {
    std::string name = foldedName(joined.graph(model).modelName());
    if (!names.contains(name)) continue;
    const auto [known, isNew] = found.try_emplace(std::move(name), model);
    if (!isNew) known->second = JoinedGraph::kNoModel;
  }
  std::vector<std::uint32_t> models;
  for (const auto& [name, model] : found)
    if (model != JoinedGraph::kNoModel) models.push_back(model);
  return models;
}

}  // namespace

JoinedGraph::JoinedGraph(const WalkGraph& graph)
    : models_{{{}, &graph}}, namesModels_(false), offsets_{0, static_cast<JoinedId>(graph.nodes().size())} {}

JoinedGraph::JoinedGraph(std::vector<Model> models)
    : models_(std::move(models)), namesModels_(true), offsets_{0} {
  for (const Model& model : models_)
    offsets_.push_back(offsets_.back() + static_cast<JoinedId>(model.graph->nodes().size()));
  joinShared();
  joinReaders();
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

/// What others read or link of a model is what has that name or ID there, where one node alone has. A model
/// that reads another one of its own name reads no part of itself.
void JoinedGraph::joinReaders() {
  const PartsRead read = partsRead(*this);
  PartIds own;
  for (const std::uint32_t model : modelsCalled(*this, read.models)) {
    for (NodeId node = 0; node < graph(model).nodes().size(); ++node) {
      for (std::string& key : graph(model).partKeys(node)) {
        if (!read.ids.contains(key)) continue;
        const auto [known, isNew] = own.try_emplace(std::move(key), offsets_[model] + node);
        if (!isNew) known->second = kNone;
      }
    }
  }
  for (const auto& [key, id] : own) {
    if (const JoinedId first = read.ids.at(key);
        id != kNone && first != kNone && !isReadBy(placeOf(id).model, first))
      lead(first, id);
  }
}

/// Whether a model has the node or one of its twins.
bool JoinedGraph::isReadBy(std::uint32_t model, JoinedId id) const noexcept {
  for (JoinedId twin = id; twin != kNone; twin = next_[twin])
    if (placeOf(twin).model == model) return true;
  return false;
}

/// Puts a node and those behind it in front of another and its twins.
void JoinedGraph::lead(JoinedId id, JoinedId first) {
  JoinedId last = first;
  while (next_[last] != kNone) last = next_[last];
  next_[last] = id;
  for (JoinedId twin = id; twin != kNone; twin = next_[twin]) first_[twin] = first;
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
