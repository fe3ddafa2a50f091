#include "host/summary.h"

#include <gtest/gtest.h>

#include <sstream>

#include "framework/serialization/model_reader.h"
#include "tests/support/corpus.h"

namespace {

TEST(Summary, Corpus) {
  tav::test::checkCorpus("host/summary.txt", [](const std::string& content) {
    const tav::Owned<TAVModel> model = tav::loadModelText(
        R"(<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models><TAVStoreModel name="S">)" +
            content + "</TAVStoreModel></models></TAVModelContent></contents></TAVMultiModel>",
        "model.xml");
    std::ostringstream out;
    host::writeSummary(host::summarize(*tav::as<TAVStoreModel>(model.get())), 0, out);
    // Lines that say nothing here are left out.
    std::istringstream lines(out.str());
    std::string shown;
    for (std::string line; std::getline(lines, line);)
      if (!line.ends_with(" 0")) shown += (shown.empty() ? "" : "\n") + line;
    return shown;
  });
}

}  // namespace
