#include "tests/tables/small_model.h"

#include <algorithm>

namespace tav::test {

SavedModel smallModel(const std::string& name, const std::string& content) {
  const std::size_t details = std::min(content.find("<TAVDetailsContent"), content.size());
  return loadSavedModelText(
      R"(<TAVMultiModel format="tav-model/1"><contents><TAVModelContent><models><TAVStoreModel name=")" +
          name + "\">" + content.substr(0, details) + "</TAVStoreModel></models></TAVModelContent>" +
          content.substr(details) + "</contents></TAVMultiModel>",
      "model.xml");
}

}  // namespace tav::test
