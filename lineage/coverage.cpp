#include "lineage/coverage.h"

#include <algorithm>
#include <unordered_map>

#include "lineage/lost_columns.h"

namespace tav {
namespace {

std::size_t percentOf(std::size_t part, std::size_t whole) {
  return whole == 0 ? 100 : part * 100 / whole;
}

/// A KPI without a trend, say, shows one all the same, which is nothing.
bool isEmptyKpiValue(const LineageGraph& graph, NodeId id) {
  const NodeId original = graph.originalOf(id);
  return graph.node(original).kind == NodeKind::kpiValue && graph.rawExpression(original).empty();
}

bool isCounted(const LineageGraph& graph, NodeId id) {
  switch (graph.node(id).kind) {
    case NodeKind::attribute:
      return true;
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
  explicit Meter(const LineageGraph& graph)
      : graph_(graph), reached_(graph.tracedBack(true)), byModel_(graph.tracedBack(false)) {}

  Coverage run() {
    placeOf(kNoNode);
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      if (graph_.node(id).kind == NodeKind::cube) placeOf(id);
      if (isCounted(graph_, id)) count(id);
      coverage_.unresolved += graph_.unresolved(id).size();
    }
    coverage_.foundByGraph = graph_.foundCount();
    return std::move(coverage_);
  }

 private:
  CubeCoverage& placeOf(NodeId cube) {
    const auto [place, isNew] = places_.try_emplace(cube, coverage_.cubes.size());
    if (isNew) coverage_.cubes.push_back({cube, {}, {}, {}});
    return coverage_.cubes[place->second];
  }

  void count(NodeId id) {
    CubeCoverage& cube = placeOf(graph_.cubeOf(id));
    CoverageCount& kind = graph_.node(id).kind == NodeKind::cubeMeasure ? cube.measures : cube.attributes;
    ++kind.count;
    kind.reached += reached_[id];
    kind.reachedByModel += byModel_[id];
    kind.rowCounts += graph_.countsRows(id);
    if (!reached_[id]) cube.gaps.push_back({id, gapReason(graph_, id)});
  }

  const LineageGraph& graph_;
  std::vector<bool> reached_;
  std::vector<bool> byModel_;
  std::unordered_map<NodeId, std::size_t> places_;
  Coverage coverage_;
};

template <class F> std::size_t percentOver(const std::vector<CubeCoverage>& cubes, F reached) {
  std::size_t part = 0;
  std::size_t whole = 0;
  for (const CubeCoverage& cube : cubes) {
    part += reached(cube.attributes) + reached(cube.measures);
    whole += cube.attributes.count + cube.measures.count;
  }
  return percentOf(part, whole);
}

}  // namespace

std::size_t Coverage::percent() const noexcept {
  return percentOver(cubes, [](const CoverageCount& kind) { return kind.reached; });
}

std::size_t Coverage::percentByModel() const noexcept {
  return percentOver(cubes, [](const CoverageCount& kind) { return kind.reachedByModel; });
}

Coverage measureCoverage(const LineageGraph& graph) {
  return Meter(graph).run();
}

std::string gapReason(const LineageGraph& graph, NodeId id) {
  id = graph.originalOf(id);
  if (graph.countsRows(id)) return "it counts the rows of a table whose source is not known";
  std::string names;
  for (const std::string& name : graph.unresolved(id)) names.append(names.empty() ? "" : ", ").append(name);
  if (!names.empty()) return "its expression uses names that are not found: " + names;
  if (!graph.into(id).empty()) return lostReason(graph, id);
  if (!graph.rawExpression(id).empty()) return "its expression uses no column, attribute or measure";
  if (graph.node(id).kind == NodeKind::kpiValue) return "the KPI has no expression for it";
  const NodeId owner = graph.node(id).owner;
  const bool hasTable = owner != kNoNode && !graph.into(owner).empty();
  if (graph.isTabular() || (graph.node(id).kind == NodeKind::attribute && !hasTable))
    return "it has no column";
  return graph.node(id).kind == NodeKind::cubeMeasure ? "the measure behind it is not in the model"
                                                      : "its column is not in the data source view";
}

}  // namespace tav
