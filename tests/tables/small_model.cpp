#include "tests/tables/small_model.h"

#include "framework/serialization/model_reader.h"

namespace tav::test {

Owned<TAVModel> smallModel(const std::string& name, const std::string& content) {
  return loadModelText(
      R"(<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models><TAVStoreModel name=")" +
          name + "\">" + content + "</TAVStoreModel></models></TAVModelContent></contents></TAVMultiModel>",
      "model.xml");
}

}  // namespace tav::test
