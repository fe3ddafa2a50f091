#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "framework/std/string.h"
#include "tests/java/leftovers.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

/// The program with an archive in place of the importer's. It is copied, since it finds its parts from its
/// own place.
class Tree {
 public:
  Tree() {
    const fs::path built = fs::path(PROGRAM_FOLDER).parent_path();
    fs::create_directories(folder_.path() / "bin");
    fs::create_directories(folder_.path() / "lib");
    fs::create_directories(folder_.path() / "share/xmla-bridge/java");
    fs::copy(built / "bin/xmla-bridge", folder_.path() / "bin");
    for (const auto& entry : fs::directory_iterator(built / "lib")) {
      const std::string name = entry.path().filename().string();
      if (name.starts_with("libTAV") || name.starts_with("libtav_framework"))
        fs::copy(entry.path(), folder_.path() / "lib" / name, fs::copy_options::copy_symlinks);
    }
    static_cast<void>(folder_.write("share/xmla-bridge/java/MicrosoftSqlServerAs.jar", "no archive"));
  }

  [[nodiscard]] std::string bin() const { return (folder_.path() / "bin").string(); }

 private:
  tav::test::TemporaryFolder folder_;
};

// fake: makes a program that plays Java, of a version, from a script on standard input.
constexpr std::string_view kPrelude = R"SH(
fake() {
  mkdir -p "$1/bin"; { echo '#!/bin/sh'; echo 'while [ $# -gt 1 ] && [ "$1" != -cp ]; do shift; done'; cat; } >"$1/bin/java"; chmod +x "$1/bin/java"
  echo "JAVA_VERSION=\"$2\"" >"$1/release"
}
model() { echo "<TAVMultiModel format=\"tav-model/1\">$1</TAVMultiModel>"; }
export XMLA_BRIDGE_JAVA=$PWD/java/bin/java TMPDIR=$PWD/tmp
unset JAVA_HOME
)SH";

std::string runCommands(const Tree& tree, const std::string& commands) {
  const tav::test::TemporaryFolder folder;
  fs::create_directory(folder.path() / "tmp");
  static_cast<void>(folder.write("sales.bim", "{\"model\": {}}"));
  const tav::test::TemporaryFolder results;
  const std::string shown = (results.path() / "shown").string();
  const std::string script = results.write("script", std::string(kPrelude) + commands);
  const std::string command = "cd '" + folder.path().string() + "' && PATH='" + tree.bin() +
                              "':\"$PATH\" sh '" + script + "' >'" + shown + "' 2>&1 </dev/null";
  const int status = std::system(command.c_str());
  const std::string text = tav::test::readFile(shown) +
                           tav::test::leftovers(folder.path(), folder.path() / "tmp") + "[exit " +
                           std::to_string(WEXITSTATUS(status)) + "]";
  return TAVString(text).replaceAll(folder.path().string(), "DIR").str();
}

TEST(TabularImport, Corpus) {
  const Tree tree;
  tav::test::checkCorpus("java/program.txt",
                         [&](const std::string& commands) { return runCommands(tree, commands); });
}

}  // namespace
