#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>

#include "exports/formats.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/printable.h"
#include "lineage/lineage_graph.h"
#include "lineage/node_search.h"
#include "tests/support/corpus.h"
#include "tests/support/graph_laws.h"

namespace {

namespace fs = std::filesystem;

/// Runs the program in a folder; its exit code.
int run(const tav::test::TemporaryFolder& folder, const std::string& arguments) {
  const int status =
      std::system(("cd '" + folder.path().string() + "' && '" PROGRAM_FOLDER "/xmla-bridge' --quiet " +
                   arguments + " >out 2>errors")
                      .c_str());
  return WEXITSTATUS(status);
}

/// Paths of a column, an attribute and a measure that the model has, by which they are asked for.
std::vector<std::string> pathsToAskFor(const TAVModel& model) {
  const tav::LineageGraph graph(model);
  std::vector<std::string> paths;
  for (const tav::NodeKind kind : {tav::NodeKind::databaseColumn, tav::NodeKind::attribute,
                                   tav::NodeKind::measure, tav::NodeKind::calculatedMeasure}) {
    const auto nodes = graph.nodes();
    const auto first = std::find_if(nodes.begin(), nodes.end(),
                                    [&](const tav::LineageNode& node) { return node.kind == kind; });
    if (first != nodes.end()) paths.push_back(graph.path(static_cast<tav::NodeId>(first - nodes.begin())));
  }
  return paths;
}

void checkDefinition(const fs::path& definition) {
  SCOPED_TRACE(definition);
  const tav::test::TemporaryFolder folder;
  if (run(folder, "import '" + definition.string() + "' -o m.xml") != 0) return;
  const tav::SavedModel saved = tav::loadSavedModel((folder.path() / "m.xml").string());
  EXPECT_EQ(tav::test::brokenGraphLaw({*saved.model, saved.details.get()}), "");
  EXPECT_EQ(run(folder, "coverage m.xml"), 0);
  EXPECT_EQ(run(folder, "diff '" + definition.string() + "' m.xml --exit-code"), 0);
  for (const tav::ExportFormat* format : tav::exportFormats()) {
    const std::string name(format->name);
    std::string command("export m.xml -o exported.");
    command.append(name).append(" --format ").append(name);
    EXPECT_EQ(run(folder, command), 0) << name;
  }
  for (const std::string& path : pathsToAskFor(*saved.model)) {
    // A shell takes a name in single quotes as it is; one that holds such a quote is not asked for here.
    if (path.find('\'') != path.npos) continue;
    EXPECT_EQ(run(folder, "trace m.xml '" + path + "'"), 0) << path;
    EXPECT_EQ(run(folder, "impact m.xml '" + path + "' --format json"), 0) << path;
  }
}

/// What a list prints of any node finds that node and no other, whichever way the next question goes.
void checkNames(const fs::path& definition) {
  SCOPED_TRACE(definition);
  const tav::test::TemporaryFolder folder;
  ASSERT_EQ(run(folder, "import '" + definition.string() + "' -o m.xml"), 0);
  const tav::SavedModel saved = tav::loadSavedModel((folder.path() / "m.xml").string());
  const tav::LineageGraph graph({*saved.model, saved.details.get()});
  const tav::NodeNames names(graph);
  for (tav::NodeId id = 0; id < graph.nodes().size(); ++id) {
    const std::string name = tav::printable(names.nameOf(id));
    for (const auto direction : {tav::LineageDirection::upstream, tav::LineageDirection::downstream})
      EXPECT_EQ(tav::findNodes(graph, name, direction), std::vector<tav::NodeId>{id}) << name;
  }
}

TEST(Lineage, ListedNamesFindTheirNodes) {
  for (const char* name : {"murmeltal-huts.asdatabase", "ferry-line.bim"})
    checkNames(fs::path(EXAMPLES) / name);
  for (const char* name : {"orders.xmla", "names.xmla", "counts.bim"})
    checkNames(tav::test::testFile(std::string("lineage/") + name));
}

TEST(Lineage, EveryCommandAnswersForExamplesAndSamples) {
  for (const char* folder : {EXAMPLES, SAMPLES "/multidimensional", SAMPLES "/tabular"}) {
    if (!fs::exists(folder)) continue;
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.is_regular_file() && entry.path().extension() != ".md") checkDefinition(entry.path());
  }
  checkDefinition(tav::test::testFile("lineage/orders.xmla"));
  checkDefinition(tav::test::testFile("lineage/names.xmla"));
}

}  // namespace
