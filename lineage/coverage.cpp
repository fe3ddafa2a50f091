#include "lineage/coverage.h"

#include <unordered_map>
#include <unordered_set>

#include "lineage/gap_reason.h"

namespace tav {
namespace {

/// A KPI without a trend, say, shows one all the same, which is nothing.
bool isEmptyKpiValue(const LineageGraph& graph, NodeId id) {
  const NodeId original = graph.originalOf(id);
  return graph.node(original).kind == NodeKind::kpiValue && graph.rawExpression(original).empty();
}

bool isCounted(const LineageGraph& graph, NodeId id) {
  switch (graph.node(id).kind) {
    case NodeKind::attribute:
      return graph.node(id).object != nullptr;
    case NodeKind::cubeMeasure:
      return !isEmptyKpiValue(graph, id);
    case NodeKind::cubeAttribute:
      return graph.cubeOf(id) != kNoNode;
    default:
      return false;
  }
}

class Meter {
 public:
  explicit Meter(const LineageGraph& graph) : graph_(graph), reached_(graph.tracedBack()) {}

  Coverage run() {
    placeOf(kNoNode);
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      if (graph_.node(id).kind == NodeKind::cube) placeOf(id);
      if (isCounted(graph_, id)) count(id);
      addNames(id);
    }
    return std::move(coverage_);
  }

 private:
  CubeCoverage& placeOf(NodeId cube) {
    const auto [place, isNew] = places_.try_emplace(cube, coverage_.cubes.size());
    if (isNew) coverage_.cubes.push_back({cube, {}, {}, {}});
    return coverage_.cubes[place->second];
  }

  void count(NodeId id) {
    const bool isMeasure = graph_.node(id).kind == NodeKind::cubeMeasure;
    CubeCoverage& cube = placeOf(graph_.cubeOf(id));
    add(id, isMeasure ? cube.measures : cube.attributes);
    const NodeId original = graph_.originalOf(id);
    if (!counted_.insert(original).second) return;
    add(id, isMeasure ? coverage_.measures : coverage_.attributes);
    if (!reached_[id])
      placeOf(graph_.cubeOf(original)).gaps.push_back({original, gapReason(graph_, original)});
  }

  void add(NodeId id, CoverageCount& kind) const {
    ++kind.count;
    kind.reached += reached_[id];
    kind.rowCounts += graph_.countsRows(id);
  }

  void addNames(NodeId id) {
    for (OpenNameText& name : graph_.openNames(id)) {
      ++coverage_.nameCounts[static_cast<std::size_t>(name.state)];
      coverage_.names.push_back({id, std::move(name)});
    }
  }

  const LineageGraph& graph_;
  std::vector<bool> reached_;
  std::unordered_map<NodeId, std::size_t> places_;
  std::unordered_set<NodeId> counted_;
  Coverage coverage_;
};

}  // namespace

void CoverageCount::add(const CoverageCount& more) noexcept {
  count += more.count;
  reached += more.reached;
  rowCounts += more.rowCounts;
}

std::size_t percentOf(const CoverageCount& attributes, const CoverageCount& measures) noexcept {
  const std::size_t whole = attributes.count + measures.count;
  return whole == 0 ? 100 : (attributes.reached + measures.reached) * 100 / whole;
}

Coverage measureCoverage(const LineageGraph& graph) {
  return Meter(graph).run();
}

}  // namespace tav
