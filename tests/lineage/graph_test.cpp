#include <gtest/gtest.h>

#include <cstdlib>

#include "framework/serialization/model_reader.h"
#include "tests/support/corpus.h"
#include "tests/support/graph_laws.h"

namespace {

namespace fs = std::filesystem;

void checkDefinition(const fs::path& definition) {
  SCOPED_TRACE(definition);
  const tav::test::TemporaryFolder folder;
  const std::string model = (folder.path() / "m.xml").string();
  const int status = std::system(("'" PROGRAM_FOLDER "/xmla-bridge' --quiet import '" + definition.string() +
                                  "' -o '" + model + "' 2>'" + (folder.path() / "errors").string() + "'")
                                     .c_str());
  if (status == 0) {
    EXPECT_EQ(tav::test::brokenGraphLaw(*tav::loadModel(model)), "");
  }
}

TEST(Lineage, LawsOfTheGraphHoldForExamplesAndSamples) {
  for (const char* folder : {EXAMPLES, SAMPLES "/multidimensional", SAMPLES "/tabular"}) {
    if (!fs::exists(folder)) continue;
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path().extension() != ".md") checkDefinition(entry.path());
  }
  checkDefinition(tav::test::testFile("lineage/orders.xmla"));
}

}  // namespace
