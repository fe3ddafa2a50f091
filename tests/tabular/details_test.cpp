// What a definition says beyond its model, for each kind of thing that it may say.

#include <gtest/gtest.h>

#include "tests/support/model_text.h"
#include "tests/tabular/details_text.h"
#include "tests/tabular/importer_run.h"

namespace {

using tav::test::ImporterRun;

TEST(TabularDetails, Corpus) {
  tav::test::checkCorpus("tabular/details.txt", [](const std::string& input) {
    const ImporterRun run = tav::test::importText(input, true);
    return run.errors + (run.details ? tav::test::detailsText(*run.details) : "");
  });
}

/// Who asks for details gets the same model, message for message.
TEST(TabularDetails, TheModelStaysAsItIs) {
  tav::test::checkCorpus("tabular/definitions.txt", [](const std::string& input) {
    const ImporterRun run = tav::test::importText(input, true);
    return run.messages + run.errors + (run.model ? tav::test::modelText(*run.model) : "");
  });
}

}  // namespace
