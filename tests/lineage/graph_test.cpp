#include <gtest/gtest.h>

#include <cstdlib>
#include <unordered_map>

#include "exports/graph/coverage.h"
#include "exports/graph/node_search.h"
#include "framework/serialization/model_reader.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

/// Laws that hold for the graph of any model.
class GraphLaws {
 public:
  explicit GraphLaws(const TAVModel& model) : graph_(model) {
    for (tav::NodeId id = 0; id < graph_.nodes().size(); ++id)
      if (graph_.node(id).object) nodes_.emplace(graph_.node(id).object, id);
  }

  void check() const {
    for (tav::NodeId id = 0; id < graph_.nodes().size(); ++id) {
      checkEdges(id);
      if (const auto* feature = tav::as<TAVFeature>(graph_.node(id).object)) checkSources(id, *feature);
    }
    checkWalks();
    checkCoverage();
  }

 private:
  void checkEdges(tav::NodeId id) const {
    for (const tav::LineageEdge& edge : graph_.into(id)) EXPECT_EQ(edge.to, id);
    for (const std::uint32_t place : graph_.outOf(id)) EXPECT_EQ(graph_.edges()[place].from, id);
    for (const tav::NodeId part : graph_.partsOf(id)) EXPECT_EQ(graph_.node(part).owner, id);
  }

  /// No link of the model's lineage is lost.
  void checkSources(tav::NodeId id, const TAVFeature& feature) const {
    const TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
    if (!map) return;
    for (const TAVFeature& source : map->sourceFeatures) {
      const auto from = nodes_.find(&source);
      ASSERT_NE(from, nodes_.end()) << source.getPath(true).view();
      const auto into = graph_.into(id);
      EXPECT_TRUE(std::any_of(
          into.begin(), into.end(),
          [&](const tav::LineageEdge& edge) { return edge.from == from->second && !edge.foundByGraph; }))
          << graph_.path(id) << " <- " << graph_.path(from->second);
    }
  }

  void checkWalks() const {
    using tav::LineageDirection;
    const std::size_t step = graph_.nodes().size() / 50 + 1;
    for (tav::NodeId id = 0; id < graph_.nodes().size(); id += static_cast<tav::NodeId>(step)) {
      for (const auto direction : {LineageDirection::upstream, LineageDirection::downstream}) {
        const auto lines = tav::lineageTree(graph_, id, direction, tav::kUnlimitedDepth, true);
        EXPECT_LE(lines.size(), graph_.edges().size() + graph_.partsOf(id).size() + 1);
        std::unordered_map<tav::NodeId, int> whole;
        for (const tav::LineageTreeLine& line : lines)
          whole[line.node] += line.state == tav::LineageTreeLine::State::whole ? 1 : 0;
        for (const auto& [node, count] : whole) EXPECT_EQ(count, 1) << graph_.path(node);
      }
    }
  }

  void checkCoverage() const {
    for (const tav::CubeCoverage& cube : tav::measureCoverage(graph_).cubes) {
      for (const tav::CoverageCount& kind : {cube.attributes, cube.measures}) {
        EXPECT_LE(kind.reachedByModel, kind.reached);
        EXPECT_LE(kind.reached, kind.coverable());
      }
      EXPECT_EQ(cube.gaps.size(), cube.attributes.coverable() - cube.attributes.reached +
                                      cube.measures.coverable() - cube.measures.reached);
      for (const tav::CoverageGap& gap : cube.gaps) EXPECT_FALSE(gap.reason.empty());
    }
  }

  tav::LineageGraph graph_;
  std::unordered_map<const TAVObject*, tav::NodeId> nodes_;
};

void checkDefinition(const fs::path& definition) {
  SCOPED_TRACE(definition);
  const tav::test::TemporaryFolder folder;
  const std::string model = (folder.path() / "m.xml").string();
  const int status = std::system(("'" PROGRAM_FOLDER "/xmla-bridge' --quiet import '" + definition.string() +
                                  "' -o '" + model + "' 2>'" + (folder.path() / "errors").string() + "'")
                                     .c_str());
  if (status == 0) GraphLaws(*tav::loadModel(model)).check();
}

TEST(Lineage, LawsOfTheGraphHoldForExamplesAndSamples) {
  for (const char* folder : {EXAMPLES, SAMPLES "/multidimensional", SAMPLES "/tabular"}) {
    if (!fs::exists(folder)) continue;
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path().extension() != ".md") checkDefinition(entry.path());
  }
  checkDefinition(tav::test::testFile("lineage/orders.xmla"));
}

}  // namespace
