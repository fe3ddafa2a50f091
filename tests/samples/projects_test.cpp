#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

/// The saved model of an input, without where it was read; details keep orders that a build changes.
std::string modelOf(const fs::path& input, const tav::test::TemporaryFolder& folder) {
  const std::string model = (folder.path() / "model.xml").string();
  const std::string command = std::string("SOURCE_DATE_EPOCH=0 '" PROGRAM "' import --quiet --no-details '") +
                              input.string() + "' -o '" + model + "'";
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
    const fs::path build = buildOf(project.path());
    const std::string compare = std::string("'" PROGRAM "' diff --quiet --exit-code '") +
                                project.path().string() + "' '" + build.string() + "' >'" +
                                (folder.path() / "changes").string() + "'";
    EXPECT_EQ(std::system(compare.c_str()), 0) << tav::test::readFile(folder.path() / "changes");
    // This build lists one dimension last that its project lists first.
    if (project.path().filename() == "adventureworks-2012-ee") continue;
    EXPECT_TRUE(modelOf(project.path(), folder) == modelOf(build, folder)) << project.path();
  }
}

}  // namespace
