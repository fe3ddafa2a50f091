#include <gtest/gtest.h>

#include "tests/host/shell.h"

namespace {

namespace fs = std::filesystem;

void copyDefinitions(const tav::test::TemporaryFolder& folder) {
  for (const char* name : {"murmeltal-huts.asdatabase", "ferry-line.bim"})
    fs::copy_file(fs::path(EXAMPLES) / name, folder.path() / name);
  for (const char* name : {"orders.xmla", "names.xmla", "linked_groups.xml", "counts.bim"})
    fs::copy_file(tav::test::testFile(std::string("lineage/") + name), folder.path() / name);
}

TEST(Lineage, Commands) {
  tav::test::checkCorpus("lineage/commands.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, copyDefinitions);
  });
}

}  // namespace
