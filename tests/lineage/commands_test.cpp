#include <gtest/gtest.h>

#include "tests/host/shell.h"

namespace {

namespace fs = std::filesystem;

void copyDefinitions(const tav::test::TemporaryFolder& folder) {
  for (const char* name : {"murmeltal-huts.asdatabase", "ferry-line.bim"})
    fs::copy_file(fs::path(EXAMPLES) / name, folder.path() / name);
  for (const char* name : {"orders.xmla", "names.xmla", "linked_groups.xml", "counts.bim", "bakery.xml"})
    fs::copy_file(tav::test::testFile(std::string("lineage/") + name), folder.path() / name);
}

void checkTranscript(const char* corpus) {
  tav::test::checkCorpus(
      corpus, [](const std::string& commands) { return tav::test::runCommands(commands, copyDefinitions); });
}

TEST(Lineage, Commands) {
  checkTranscript("lineage/commands.txt");
}

// Several definitions over one warehouse, below a folder with one that is none of them.
TEST(Lineage, SeveralModels) {
  tav::test::checkCorpus("lineage/models.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, [](const tav::test::TemporaryFolder& folder) {
      const fs::path estate = folder.path() / "estate";
      fs::copy(fs::path(EXAMPLES) / "estate", estate);
      fs::copy_file(fs::path(EXAMPLES) / "murmeltal-huts.asdatabase", estate / "huts.asdatabase");
      for (const char* name : {"bakery.xml", "orders.xmla"})
        fs::copy_file(tav::test::testFile(std::string("lineage/") + name), folder.path() / name);
    });
  });
}

TEST(Lineage, Answers) {
  checkTranscript("lineage/answers.txt");
}

}  // namespace
