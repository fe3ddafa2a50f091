#include "tests/support/graph_laws.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <unordered_map>

#include "lineage/coverage.h"
#include "lineage/lineage_tree.h"
#include "lineage/model_diff.h"

namespace tav::test {
namespace {

constexpr std::size_t kWalks = 20;    // starts that are spread over the nodes
constexpr std::size_t kWaysBack = 5;  // ends of a walk from which it is walked back

class GraphLaws {
 public:
  explicit GraphLaws(const DetailedModel& model) : graph_(model) {
    for (NodeId id = 0; id < graph_.nodes().size(); ++id)
      if (graph_.node(id).object) nodes_.emplace(graph_.node(id).object, id);
  }

  std::string check() {
    for (NodeId id = 0; id < graph_.nodes().size() && broken_.empty(); ++id) {
      checkOrder(id);
      if (const auto* feature = as<TAVFeature>(graph_.node(id).object)) checkSources(id, *feature);
    }
    if (graph_.details()) checkRelations(*graph_.details());
    checkWalks();
    checkCoverage();
    require(compareModels(graph_, graph_).empty(), "a model differs from itself", 0);
    return broken_;
  }

 private:
  void require(bool holds, const char* law, NodeId id) {
    if (!holds && broken_.empty())
      broken_ = std::string(law) + (id < graph_.nodes().size() ? ": " + graph_.path(id) : "");
  }

  void checkOrder(NodeId id) {
    const auto into = graph_.into(id);
    const auto out = graph_.outOf(id);
    const auto parts = graph_.partsOf(id);
    require(std::all_of(into.begin(), into.end(), [&](const LineageEdge& edge) { return edge.to == id; }),
            "an edge into another node", id);
    require(std::all_of(out.begin(), out.end(),
                        [&](std::uint32_t place) { return graph_.edges()[place].from == id; }),
            "an edge out of another node", id);
    require(
        std::all_of(parts.begin(), parts.end(), [&](NodeId part) { return graph_.node(part).owner == id; }),
        "the part of another node", id);
  }

  void checkSources(NodeId id, const TAVFeature& feature) {
    const TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
    if (!map) return;
    std::vector<NodeId> sources;
    for (const LineageEdge& edge : graph_.into(id))
      if (!edge.foundByGraph) sources.push_back(edge.from);
    std::sort(sources.begin(), sources.end());
    for (const TAVFeature& source : map->sourceFeatures) {
      const auto from = nodes_.find(&source);
      // Level attributes are no nodes, and no definition makes one a source.
      if (from == nodes_.end()) continue;
      require(std::binary_search(sources.begin(), sources.end(), from->second),
              "a source of the model is lost", id);
    }
  }

  /// A relation may be one that the model has too.
  void checkRelations(const Details& details) {
    std::set<std::tuple<NodeId, NodeId, EdgeKind>> edges;
    for (const LineageEdge& edge : graph_.edges()) edges.emplace(edge.from, edge.to, edge.kind);
    for (const DetailRelation& relation : details.relations()) {
      const NodeId from = graph_.nodeOf(relation.from);
      const NodeId to = graph_.nodeOf(relation.to);
      require(relation.kind == RelationKind::replaced || edges.contains({from, to, relation.kind}),
              "a relation of the details is lost", to);
    }
  }

  void checkWalks() {
    const std::size_t step = graph_.nodes().size() / kWalks + 1;
    for (std::size_t id = 0; id < graph_.nodes().size(); id += step) {
      for (const auto direction : {LineageDirection::upstream, LineageDirection::downstream})
        checkWalk(static_cast<NodeId>(id), direction);
    }
  }

  void checkWalk(NodeId id, LineageDirection direction) {
    const auto lines = lineageTree(graph_, id, {.direction = direction, .members = true});
    require(lines.size() <= graph_.edges().size() + graph_.partsOf(id).size() + 1, "a walk goes in circles",
            id);
    std::unordered_map<NodeId, int> whole;
    for (const LineageTreeLine& line : lines)
      whole[line.node] += line.state == LineageTreeLine::State::whole ? 1 : 0;
    for (const auto& [node, count] : whole) require(count == 1, "not shown whole once", node);
    // A start that has parts stands for them as well.
    if (graph_.partsOf(id).empty()) checkWaysBack(id, direction);
  }

  /// What depends on a node comes from it, and the other way round.
  void checkWaysBack(NodeId id, LineageDirection direction) {
    const LineageDirection back =
        direction == LineageDirection::upstream ? LineageDirection::downstream : LineageDirection::upstream;
    const auto lines = lineageTree(graph_, id, {.direction = direction});
    const std::size_t step = lines.size() / kWaysBack + 1;
    for (std::size_t i = 0; i < lines.size(); i += step) {
      const auto ways = lineageTree(graph_, lines[i].node, {.direction = back});
      require(
          std::any_of(ways.begin(), ways.end(), [&](const LineageTreeLine& line) { return line.node == id; }),
          "trace and impact are no mirrors", id);
    }
  }

  void checkCoverage() {
    const Coverage coverage = measureCoverage(graph_);
    std::size_t gaps = 0;
    for (const CubeCoverage& cube : coverage.cubes) {
      for (const CoverageCount& kind : {cube.attributes, cube.measures})
        require(kind.reached <= kind.count && kind.rowCounts <= kind.count, "counts that do not add up",
                cube.cube);
      gaps += cube.gaps.size();
    }
    std::size_t open = 0;
    for (const CoverageCount& kind : {coverage.attributes, coverage.measures})
      open += kind.count - kind.reached;
    require(gaps == open, "gaps that are not counted", kNoNode);
  }

  LineageGraph graph_;
  std::unordered_map<const TAVObject*, NodeId> nodes_;
  std::string broken_;
};

}  // namespace

std::string brokenGraphLaw(const DetailedModel& model) {
  return GraphLaws(model).check();
}

}  // namespace tav::test
