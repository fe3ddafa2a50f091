#include "tests/support/model_laws.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "exports/json.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/model_writer.h"
#include "framework/std/exception.h"
#include "tests/support/graph_laws.h"

namespace tav::test {

namespace {

std::string saved(const TAVModel& model) {
  std::ostringstream out;
  writeModel(model, out);
  return std::move(out).str();
}

std::string exported(const TAVModel& model) {
  std::ostringstream out;
  exportJson(model, out);
  return std::move(out).str();
}

}  // namespace

std::string brokenLaw(const TAVModel& model) {
  const std::string document = saved(model);
  Owned<TAVModel> loaded;
  try {
    loaded = loadModelText(document, "saved");
  } catch (const TAVException& failure) {
    return "the saved model is refused: " + failure.getMessage().str();
  }
  if (saved(*loaded) != document) return "saved, loaded and saved again it differs";
  const std::string json = exported(model);
  if (exported(*loaded) != json) return "loaded again it exports other JSON";
  if (!nlohmann::json::accept(json)) return "the exported JSON does not parse";
  return brokenGraphLaw(*loaded);
}

}  // namespace tav::test
