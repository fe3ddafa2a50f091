#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <set>
#include <sstream>

#include "framework/model/tree_walk.h"
#include "framework/serialization/model_reader.h"
#include "tests/support/corpus.h"
#include "tests/support/model_laws.h"

namespace {

namespace fs = std::filesystem;

/// What of a model can be counted in its definition too.
class Summary {
 public:
  void enter(const TAVObject& object) {
    ++counts_[object.classId()];
    if (const auto* view = tav::as<TAVDesignPackage>(&object)) views_ += view->nativeType == "DataSourceView";
    if (const auto* attribute = tav::as<TAVDimensionAttribute>(&object)) fed_ += isFedByColumn(*attribute);
  }
  void enterRole(const tav::LinkRow& /*row*/) {}
  void leaveRole(const tav::LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}

  [[nodiscard]] std::string text() const {
    std::ostringstream out;
    out << "connections " << count<TAVStoreConnection>() << "\nviews " << views_ << "\ntables "
        << count<TAVTable>() << "\ncolumns " << count<TAVColumn>() << "\ndimensions " << count<TAVDimension>()
        << "\nattributes " << count<TAVDimensionAttribute>() << "\nattributes that lead back to a column "
        << fed_ << "\nhierarchies " << count<TAVHierarchy>() << "\nlevels " << count<TAVLevel>()
        << "\nplaces of levels in hierarchies " << count<TAVHierarchyLevelAssociation>()
        << "\nattributes of levels " << count<TAVLevelAttribute>() << "\nkeys of levels "
        << count<TAVLevelKey>();
    return out.str();
  }

 private:
  template <class T> [[nodiscard]] int count() const { return counts_[tav::classId<T>]; }

  static bool isFedByColumn(const TAVDimensionAttribute& attribute) {
    const TAVFeatureMap* map = attribute.getDestinationOfFeatureMap();
    if (!map) return false;
    for (const TAVFeature& source : map->sourceFeatures)
      if (tav::is<TAVColumn>(source)) return true;
    return false;
  }

  std::array<int, tav::kClassCount> counts_{};
  int views_ = 0;
  int fed_ = 0;
};

void expectSchemaKept(const std::string& model) {
  const std::string schema = tav::test::testFile("../docs/model.xsd").string();
  const std::string command =
      "xmllint --huge --noout --schema '" + schema + "' '" + model + "' 2>'" + model + ".log'";
  EXPECT_EQ(std::system(command.c_str()), 0) << tav::test::readFile(model + ".log");
}

/// Imports a sample with the program: the exit code, its messages, and what the saved model holds.
std::string importSample(const std::string& name) {
  SCOPED_TRACE(name);
  const tav::test::TemporaryFolder folder;
  const std::string output = (folder.path() / "model.xml").string();
  const std::string log = (folder.path() / "log").string();
  const std::string command =
      "cd '" SAMPLES "' && " PROGRAM " --quiet import '" + name + "' -o '" + output + "' >'" + log + "' 2>&1";
  const int status = std::system(command.c_str());
  std::string shown = "exit " + std::to_string(WEXITSTATUS(status)) + "\n" + tav::test::readFile(log);
  if (!fs::exists(output)) return shown + "no model";
  const tav::Owned<TAVModel> model = tav::loadModel(TAVString(output));
  EXPECT_EQ(tav::test::brokenLaw(*model), "");
  expectSchemaKept(output);
  Summary summary;
  tav::walkTree(*model, summary);
  return shown + summary.text();
}

TEST(Samples, AreImportedWhole) {
  tav::test::checkCorpus("samples/expected.txt", importSample);
}

TEST(Samples, NoneIsLeftOut) {
  std::set<std::string> expected;
  for (const auto& c : tav::test::loadCorpus("samples/expected.txt")) expected.insert(c.input);
  for (const char* folder : {"multidimensional", "tabular"})
    for (const auto& entry : fs::directory_iterator(fs::path(SAMPLES) / folder))
      EXPECT_EQ(expected.count(folder + ("/" + entry.path().filename().string())), 1U) << entry.path();
}

}  // namespace
