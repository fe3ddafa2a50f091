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

/// What the program's own summary does not count.
class Summary {
 public:
  void enter(const TAVObject& object) {
    ++counts_[object.classId()];
    if (const auto* view = tav::as<TAVDesignPackage>(&object)) views_ += view->nativeType == "DataSourceView";
    if (const auto* group = tav::as<TAVDimension>(&object)) groups_ += static_cast<int>(group->measureGroup);
    if (const auto* alias = tav::as<TAVAliasClassifier>(&object))
      linkedGroups_ += alias->nativeType == "MeasureGroup";
  }
  void enterRole(const tav::LinkRow& /*row*/) {}
  void leaveRole(const tav::LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}

  [[nodiscard]] std::string text() const {
    std::ostringstream out;
    out << "views " << views_ << ", hierarchies " << count<TAVHierarchy>() << ", levels " << count<TAVLevel>()
        << ", their places " << count<TAVHierarchyLevelAssociation>() << ", attributes "
        << count<TAVLevelAttribute>() << " and keys " << count<TAVLevelKey>() << "\ncube dimensions "
        << count<TAVCubeDimensionAssociation>() << ", measure groups " << groups_ << ", linked "
        << linkedGroups_;
    return out.str();
  }

 private:
  template <class T> [[nodiscard]] int count() const { return counts_[tav::classId<T>]; }

  std::array<int, tav::kClassCount> counts_{};
  int views_ = 0;
  int groups_ = 0;
  int linkedGroups_ = 0;
};

void expectSchemaKept(const std::string& model) {
  const std::string schema = tav::test::testFile("../docs/model.xsd").string();
  const std::string command =
      "xmllint --huge --noout --schema '" + schema + "' '" + model + "' 2>'" + model + ".log'";
  EXPECT_EQ(std::system(command.c_str()), 0) << tav::test::readFile(model + ".log");
}

std::string lastLine(const std::string& text) {
  return text.substr(text.rfind('\n', text.size() - 2) + 1);
}

/// Imports a sample with the program: the exit code, the summary or the error, and what the saved model
/// holds.
std::string importSample(const std::string& name) {
  SCOPED_TRACE(name);
  const tav::test::TemporaryFolder folder;
  const auto in = [&](const char* file) { return (folder.path() / file).string(); };
  const std::string output = in("model.xml");
  const std::string command = "cd '" SAMPLES "' && " PROGRAM " import '" + name + "' -o '" + output + "' >'" +
                              in("out") + "' 2>'" + in("messages") + "'";
  const int code = WEXITSTATUS(std::system(command.c_str()));
  std::string shown = "exit " + std::to_string(code) + "\n";
  if (code == 0) {
    shown += tav::test::readFile(in("out"));
    shown.erase(shown.rfind("Saved in "));
  } else {
    shown += lastLine(tav::test::readFile(in("messages")));
  }
  if (!fs::exists(output)) return shown + "no model";
  const auto [model, details] = tav::loadSavedModel(TAVString(output));
  EXPECT_EQ(tav::test::brokenLaw({*model, details.get()}), "");
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
