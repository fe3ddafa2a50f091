#include <gtest/gtest.h>

#include "tests/host/shell.h"

namespace {

namespace fs = std::filesystem;

std::string run(const std::string& commands) {
  return tav::test::runCommands(commands, [](const tav::test::TemporaryFolder& folder) {
    for (const char* name : {"murmeltal-huts.asdatabase", "ferry-line.bim"})
      fs::copy_file(fs::path(EXAMPLES) / name, folder.path() / name);
    fs::copy_file(tav::test::testFile("checks/hostile.bim"), folder.path() / "hostile.bim");
    fs::copy_file(fs::path(DOCS) / "check.md", folder.path() / "check.md");
    fs::copy_file(fs::path(EXAMPLES) / "pre-commit", folder.path() / "pre-commit");
  });
}

TEST(Checks, Corpus) {
  tav::test::checkCorpus("checks/checks.txt", run);
}

}  // namespace
