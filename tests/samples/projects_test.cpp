#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

/// Saves the model of an input alone, since details keep orders that a build changes, and without where it
/// was read.
std::string saveModel(const fs::path& input, const fs::path& model) {
  const std::string command = std::string("SOURCE_DATE_EPOCH=0 '" PROGRAM "' import --quiet --no-details '") +
                              input.string() + "' -o '" + model.string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << input;
  return std::regex_replace(tav::test::readFile(model), std::regex("<TAVMetadataOrigin [^>]*>"), "");
}

/// What a project was built into: beside it, or among the samples of the same name.
fs::path buildOf(const fs::path& project) {
  if (fs::exists(project / "bin"))
    for (const fs::directory_entry& file : fs::directory_iterator(project / "bin"))
      if (file.path().extension() == ".asdatabase") return file.path();
  return fs::path(SAMPLES) / "multidimensional" / (project.filename().string() + ".xmla");
}

TEST(Samples, ProjectsGiveTheModelsOfTheirBuilds) {
  const fs::path projects = fs::path(SAMPLES) / "projects";
  if (!fs::exists(projects)) GTEST_SKIP();
  const tav::test::TemporaryFolder folder;
  for (const fs::directory_entry& project : fs::directory_iterator(projects)) {
    const fs::path ofProject = folder.path() / "project.xml";
    const fs::path ofBuild = folder.path() / "build.xml";
    const bool equal = saveModel(project.path(), ofProject) == saveModel(buildOf(project.path()), ofBuild);
    // This build lists one dimension last that its project lists first.
    const bool reordered = project.path().filename() == "adventureworks-2012-ee";
    EXPECT_TRUE(equal || reordered) << project.path();
    const std::string compare =
        std::string("'" PROGRAM
                    "' diff --quiet --fail-on broken,lost-lineage,changed,added,removed,renamed,moved '") +
        ofProject.string() + "' '" + ofBuild.string() + "' >'" + (folder.path() / "changes").string() + "'";
    EXPECT_EQ(std::system(compare.c_str()), 0) << tav::test::readFile(folder.path() / "changes");
  }
}

}  // namespace
