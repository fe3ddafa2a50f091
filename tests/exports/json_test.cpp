#include "exports/json.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "framework/serialization/model_reader.h"
#include "framework/std/json_text.h"
#include "tests/support/corpus.h"

namespace {

std::string exported(const tav::DetailedModel& model) {
  std::ostringstream out;
  tav::exportJson(model, out);
  std::string text = out.str();
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

/// Details, where the content has some, stand behind the model.
tav::SavedModel modelWith(const std::string& content) {
  const std::size_t details = std::min(content.find("<TAVDetailsContent"), content.size());
  return tav::loadSavedModelText(
      R"(<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models><TAVStoreModel>)" +
          content.substr(0, details) + "</TAVStoreModel></models></TAVModelContent>" +
          content.substr(details) + "</contents></TAVMultiModel>",
      "model.xml");
}

TEST(Json, Corpus) {
  tav::test::checkCorpus("exports/json.txt", [](const std::string& content) {
    const tav::SavedModel saved = modelWith(content);
    const tav::DetailedModel model(*saved.model, saved.details.get());
    std::string text = exported(model);
    EXPECT_TRUE(nlohmann::json::accept(text));
    EXPECT_EQ(exported(model), text);
    return text;
  });
}

TEST(Json, BytesThatAreNoTextAreReplacedEachByOneCharacter) {
  std::string text;
  tav::appendJsonText(text, std::string_view("a\xC3\xE2\x82z\0\x1F\xF0\x9F\x98\x80", 11));
  EXPECT_EQ(text, "\"a\\ufffd\\ufffd\\ufffdz\\u0000\\u001f\xF0\x9F\x98\x80\"");
}

TEST(Json, DepthIsNotLimitedByTheStack) {
  constexpr int kDepth = 100'000;
  const auto model = tav::make<TAVStoreModel>("deep");
  TAVDesignPackage* package = &model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/');
  for (int i = 1; i < kDepth; ++i) package = &package->addNamespaceElement(tav::make<TAVDesignPackage>("p"));
  const std::string text = exported(*model);
  EXPECT_EQ(std::count(text.begin(), text.end(), '{'), kDepth + 2);
  EXPECT_EQ(std::count(text.begin(), text.end(), '}'), kDepth + 2);
}

}  // namespace
