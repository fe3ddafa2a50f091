#include <gtest/gtest.h>

#include "bridge/import.h"
#include "framework/model/traversal.h"
#include "tests/support/corpus.h"
#include "tests/support/model_laws.h"

// Imports that end half-way. The caller's model must stay whole.

namespace {

struct Broken {};

/// Breaks at one of its events.
class BreakingLog : public TAVLog {
 public:
  explicit BreakingLog(int breaksAt) : left_(breaksAt) {}
  void logEvent(const TAVLogEvent& /*event*/) override {
    if (--left_ == 0) throw Broken();
  }

 private:
  int left_;
};

/// The paths of all objects in a model that still have an ID of the definition.
class IdsLeft : public TAVTraversalOperation {
 public:
  explicit IdsLeft(TAVStoreModel& model) : model_(&model) { model.depthTraversal(*this); }
  void visit(TAVObject& object) override {
    const auto* element = tav::as<TAVElement>(&object);
    if (element && element != model_ && !element->nativeId.empty())
      paths += element->getPath(true).str() + " " + element->nativeId.str() + "\n";
  }
  std::string paths;

 private:
  const TAVStoreModel* model_;
};

/// Imports a file once for each of its log's events, and breaks there. Returns how many events there are.
int breakAtEachEvent(const std::string& path) {
  for (int event = 1;; ++event) {
    const tav::Owned<TAVStoreModel> model = tav::make<TAVStoreModel>();
    bool broken = false;
    try {
      BreakingLog log(event);
      execAsImport("test", TAVFile(TAVString(path)), model.get(), &log);
    } catch (const Broken&) {
      broken = true;
    }
    EXPECT_EQ(IdsLeft(*model).paths, "") << path << ", event " << event;
    EXPECT_EQ(tav::test::brokenLaw(*model), "") << path << ", event " << event;
    if (!broken) return event - 1;
  }
}

TEST(InterruptedImport, LeavesAModelWithoutIdsThatCanBeSavedAndDeleted) {
  EXPECT_EQ(breakAtEachEvent(tav::test::testFile("../examples/murmeltal-huts.asdatabase").string()), 16);
  // Two cubes, linked groups of both, and names that mean nothing: each a warning amid the last steps.
  const tav::test::TemporaryFolder folder;
  const std::string group =
      "<MeasureGroup><ID>g</ID><Name>G</Name><Measures><Measure><ID>m</ID><Name>M</Name>"
      "<Source><Source/></Source></Measure></Measures></MeasureGroup>";
  const auto linked = [](const std::string& cube) {
    return "<MeasureGroup><ID>l</ID><Name>L</Name><Source><CubeID>" + cube +
           "</CubeID><MeasureGroupID>g</MeasureGroupID></Source></MeasureGroup>";
  };
  const std::string kpi = "<Kpis><Kpi><Name>K</Name><Value>[Gone]</Value><Goal>[M]</Goal></Kpi></Kpis>";
  const std::string document =
      "<Database><ID>d</ID><Name>D</Name><DataSources><DataSource><ID>s</ID></DataSource></DataSources>"
      "<Dimensions><Dimension><ID>x</ID><Name>X</Name></Dimension></Dimensions><Cubes>"
      "<Cube><ID>a</ID><Name>A</Name><MeasureGroups>" +
      group + linked("b") + "</MeasureGroups>" + kpi +
      "</Cube><Cube><ID>b</ID><Name>B</Name><MeasureGroups>" + group + linked("a") + "</MeasureGroups>" +
      kpi + "</Cube></Cubes></Database>";
  EXPECT_EQ(breakAtEachEvent(folder.write("definition.xmla", document)), 9);
}

}  // namespace
