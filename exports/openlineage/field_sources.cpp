#include "exports/openlineage/field_sources.h"

namespace tav {
namespace {

bool isLineage(EdgeKind kind) {
  return (givesValue(kind) && kind != EdgeKind::applied) || kind == EdgeKind::condition;
}

/// Whether a node is gone through: only the details have it, and no dataset does.
bool isStep(const LineageGraph& graph, NodeId id) {
  return !graph.node(id).object && !graph.database(id);
}

class SourceWalk {
 public:
  SourceWalk(const LineageGraph& graph, const CatalogDatasets& datasets)
      : graph_(graph), datasets_(datasets) {}

  std::vector<FieldSource> run(NodeId node) {
    addSources({node, EdgeKind::direct}, false);
    for (std::size_t next = 0; next < steps_.size(); ++next) {
      const FieldSource step = steps_[next];
      addSources(step, true);
    }
    return std::move(sources_);
  }

 private:
  void addSources(const FieldSource& to, bool isStepped) {
    for (const LineageEdge& edge : graph_.into(to.node)) {
      if (!isLineage(edge.kind)) continue;
      const NodeId from = datasets_.resolve(edge.from);
      EdgeKind kind = edge.kind;
      if (isStepped && kind != EdgeKind::condition) kind = to.kind;
      if (datasets_.datasetOf(from) != kNoDataset)
        add({from, kind}, sources_);
      else if (isStep(graph_, from))
        add({from, kind == EdgeKind::condition ? kind : EdgeKind::computed}, steps_);
    }
  }

  void add(const FieldSource& source, std::vector<FieldSource>& list) {
    const std::uint64_t way =
        std::uint64_t{source.node} * kEdgeKindCount + static_cast<unsigned>(source.kind);
    if (known_.insert(way).second) list.push_back(source);
  }

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  std::vector<FieldSource> sources_;
  std::vector<FieldSource> steps_;
  std::unordered_set<std::uint64_t> known_;
};

}  // namespace

std::vector<FieldSource> fieldSources(const LineageGraph& graph, const CatalogDatasets& datasets,
                                      NodeId node) {
  return SourceWalk(graph, datasets).run(node);
}

}  // namespace tav
