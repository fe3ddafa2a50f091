#include "tests/support/model_laws.h"

#include <algorithm>
#include <sstream>

#include "exports/json.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/model_writer.h"
#include "framework/std/exception.h"
#include "tests/support/graph_laws.h"
#include "tests/support/json_model.h"

namespace tav::test {

namespace {

std::string saved(const DetailedModel& model, Passwords passwords = Passwords::kept) {
  std::ostringstream out;
  writeModel(model.model, out, model.details, passwords);
  return std::move(out).str();
}

std::string exported(const DetailedModel& model) {
  std::ostringstream out;
  exportJson(model, out);
  return std::move(out).str();
}

/// The first line of a text that differs from the other's; empty when none does.
std::string lineThatDiffers(std::string_view text, std::string_view other) {
  const auto [at, otherAt] = std::mismatch(text.begin(), text.end(), other.begin(), other.end());
  if (at == text.end() && otherAt == other.end()) return {};
  const auto place = static_cast<std::size_t>(at - text.begin());
  const std::size_t begin = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;
  return std::string(text.substr(begin, text.find('\n', place) - begin)) + "\n";
}

/// A saved model without the names of values of properties, which say no more than those of their types.
std::string savedForJson(const DetailedModel& model) {
  constexpr std::string_view kValue = "<TAVPropertyValue ";
  constexpr std::string_view kName = " name=\"";
  const std::string text = saved(model, Passwords::masked);
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = text.find(kValue); at != text.npos; at = text.find(kValue, at + 1)) {
    const std::size_t name = text.find(kName, at);
    if (name > text.find('>', at)) continue;
    result.append(text, done, name - done);
    done = text.find('"', name + kName.size()) + 1;
  }
  return result.append(text, done);
}

/// The first line of a saved model that the one read from its JSON does not have.
std::string lostInJson(const DetailedModel& model) {
  const SavedModel read = readJson(exported(model));
  return lineThatDiffers(savedForJson(model), savedForJson({*read.model, read.details.get()}));
}

}  // namespace

std::string brokenLaw(const DetailedModel& detailed) {
  const TAVModel& model = detailed.model;
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
  try {
    if (const std::string lost = lostInJson(detailed); !lost.empty())
      return "read from its JSON it differs: " + lost;
  } catch (const std::exception& failure) {
    return std::string("the exported JSON is refused: ") + failure.what();
  }
  return brokenGraphLaw(*loaded);
}

}  // namespace tav::test
