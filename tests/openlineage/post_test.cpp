#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/corpus.h"

namespace {

constexpr std::string_view kModel = R"(<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models>
<TAVStoreModel name="D"><designPackages><TAVDesignPackage name="Dimensions"><namespaceElements>
<TAVDimension name="One"/><TAVDimension name="Two"/><TAVDimension name="Three"/>
</namespaceElements></TAVDesignPackage></designPackages></TAVStoreModel>
</models></TAVModelContent></contents></TAVMultiModel>)";

/// Runs a shell command in which `serve ANSWERS -- ARGUMENTS` exports the model with a server to post to.
std::string runCommand(const std::string& command) {
  const tav::test::TemporaryFolder folder;
  static_cast<void>(folder.write("model.xml", kModel));
  const std::string serve = tav::test::testFile("openlineage/serve.mjs").string();
  const std::string script = folder.write("script", "program='" PROGRAM "'\nserver='" + serve + R"('
serve() {
  answers=
  while [ "$1" != -- ]; do answers="$answers $1"; shift; done; shift
  ')" NODE R"(' "$server" $answers -- $under "$program" export model.xml --format openlineage "$@"
}
)" + command);
  const std::string out = (folder.path() / "out").string();
  static_cast<void>(
      std::system(("cd '" + folder.path().string() +
                   "' && unset http_proxy all_proxy ALL_PROXY OPENLINEAGE_API_KEY && sh script >'" + out +
                   "' 2>&1 </dev/null")
                      .c_str()));
  std::string shown = tav::test::readFile(out);
  if (shown.ends_with('\n')) shown.pop_back();
  return shown;
}

TEST(LineagePost, Corpus) {
  tav::test::checkCorpus("openlineage/post.txt", runCommand);
}

}  // namespace
