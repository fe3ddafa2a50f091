#include "exports/estate_lineage.h"

#include <algorithm>
#include <utility>

#include "exports/estate_rows.h"

namespace tav {
namespace {

/// How well what fits the name best does.
NameFit bestFit(const JoinedGraph& graph, std::string_view name, LineageDirection direction) {
  const ScopedName scope = splitModel(graph, name);
  NameFit best = NameFit::none;
  for (std::uint32_t model = 0; model < graph.models().size(); ++model)
    if (!scope.model || scope.model == model)
      best = std::min(best, matchNodes(graph.graph(model), scope.name, direction).fit);
  return best;
}

}  // namespace

EstateAnswer::EstateAnswer(std::unique_ptr<EstateRows> rows) : rows_(std::move(rows)) {}

EstateAnswer::~EstateAnswer() = default;

/// The rows that have been read so far, for each of the models.
std::vector<StoredGraph::Part> EstateAnswer::parts(const AskedModels& asked) {
  std::vector<StoredGraph::Part> parts(asked.models.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    models_[asked.models[i].id] = static_cast<std::uint32_t>(i);
    parts[i].model = asked.models[i].name;
    parts[i].notes = rows_->notesOf(asked.models[i].id);
  }
  rows_->requireSound();
  const auto& nodes = rows_->nodes();
  for (const auto& [id, node] : nodes) parts[models_.at(node.model)].nodes.push_back(&node);
  for (const auto& [place, edge] : rows_->edges())
    if (const auto to = nodes.find(edge.to); to != nodes.end() && nodes.contains(edge.from))
      parts[models_.at(to->second.model)].edges.push_back(&edge);
  for (StoredGraph::Part& part : parts) {
    std::sort(part.nodes.begin(), part.nodes.end(),
              [](const StoredNode* a, const StoredNode* b) { return a->id < b->id; });
    std::sort(part.edges.begin(), part.edges.end(), [](const StoredEdge* a, const StoredEdge* b) {
      return a->to != b->to ? a->to < b->to : a->place < b->place;
    });
  }
  return parts;
}

/// Makes graphs of them.
void EstateAnswer::join(const AskedModels& asked) {
  joined_.reset();
  graphs_.clear();
  std::vector<JoinedGraph::Model> models;
  for (StoredGraph::Part& part : parts(asked)) {
    graphs_.push_back(std::make_unique<StoredGraph>(std::move(part)));
    if (!asked.names.empty()) models.push_back({asked.names[models.size()], graphs_.back().get()});
  }
  if (asked.names.empty())
    joined_.emplace(*graphs_.front());
  else
    joined_.emplace(std::move(models));
}

std::int64_t EstateAnswer::rowOf(JoinedId id) const {
  const auto [model, node] = joined_->placeOf(id);
  return graphs_[model]->row(node).id;
}

JoinedId EstateAnswer::idOf(std::int64_t row) const {
  const std::uint32_t model = models_.at(rows_->nodes().at(row).model);
  return joined_->idOf(model, graphs_[model]->nodeOf(row));
}

EstateLineage::EstateLineage(const std::string& path, AskedModels asked)
    : path_(path), asked_(std::move(asked)) {}

/// Reads what the name may mean. Only parts of paths and names, and what nothing is called, make it look at
/// all nodes.
void EstateAnswer::readMeant(const AskedModels& asked, std::string_view name, LineageDirection direction) {
  join(asked);
  const std::string_view wanted = splitModel(*joined_, name).name;
  const bool isPath = wanted.find('/') != wanted.npos;
  const auto fit = [&] {
    join(asked);
    return bestFit(*joined_, name, direction);
  };
  rows_->readNamed(wanted);
  if (isPath && fit() != NameFit::path) rows_->readEndingIn(wanted);
  if (fit() < NameFit::part) return;
  rows_->readHolding(wanted);
  if (fit() != NameFit::none) return;
  rows_->readNearest(wanted);
  join(asked);
}

std::unique_ptr<const EstateAnswer> EstateLineage::ask(std::string_view name, const LineageWalk& walk) const {
  auto answer = std::make_unique<EstateAnswer>(std::make_unique<EstateRows>(path_, asked_.models));
  answer->readMeant(asked_, name, walk.direction);
  FoundStarts starts = findStarts(answer->graph(), name, walk.direction);
  std::vector<std::int64_t> ids;
  ids.reserve(starts.nodes.size());
  for (const JoinedId id : starts.nodes) ids.push_back(answer->rowOf(id));
  answer->rows_->readWalk(ids, walk);
  answer->join(asked_);
  starts.nodes.clear();
  for (const std::int64_t id : ids) starts.nodes.push_back(answer->idOf(id));
  // What is read of a model may have met with what it is there.
  std::sort(starts.nodes.begin(), starts.nodes.end());
  starts.nodes.erase(std::unique(starts.nodes.begin(), starts.nodes.end()), starts.nodes.end());
  answer->starts_ = std::move(starts);
  return answer;
}

}  // namespace tav
