#include "host/answer_models.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>

#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "host/command.h"
#include "host/inputs/estate_model.h"
#include "host/inputs/folder.h"
#include "host/model_input.h"
#include "host/reports_option.h"
#include "messages/message.h"

namespace host {
namespace {

namespace fs = std::filesystem;

void addEstate(const EstatePlace& place, AnswerInputs& found, std::vector<std::string>& paths) {
  const std::vector<tav::EstateModel> models = modelsIn(place);
  for (const tav::EstateModel& model : models) paths.push_back(estateArgument(place.path, model));
  if (models.empty()) paths.push_back(place.path);
  found.several |= place.model.empty();
}

/// Adds what an input stands for to `paths`.
void addPaths(const std::string& input, AnswerInputs& found, std::vector<std::string>& paths) {
  if (const auto place = estatePlace(input)) return addEstate(*place, found, paths);
  std::error_code ignored;  // what cannot be asked for is told by whoever opens it
  std::vector<std::string> below;
  if (fs::is_directory(input, ignored)) below = modelsBelow(input);
  if (below.size() > 1 || (below.size() == 1 && definitionsIn(input).empty())) {
    found.several = true;
    paths.insert(paths.end(), below.begin(), below.end());
  } else {
    paths.push_back(input);
  }
}

/// Where a model comes from; of one in an estate, from where it came there.
std::string placeOf(const std::string& input) {
  const auto estate = estatePlace(input);
  return estate && !estate->model.empty() ? estate->model : input;
}

}  // namespace

AnswerInputs findInputs(const std::vector<std::string>& inputs, GivenMap map, MessageLog& log,
                        const std::vector<std::string>& reports) {
  AnswerInputs found;
  found.several = inputs.size() > 1;
  found.maps = InputMaps(std::move(map));
  std::vector<std::string> paths;
  for (const std::string& input : inputs) {
    checkInput(input);
    addPaths(input, found, paths);
  }
  std::unordered_set<std::string> known;
  for (const std::string& path : paths) {
    if (known.insert(fs::absolute(path).lexically_normal().string()).second)
      found.paths.push_back(path);
    else
      log.logEventOf(path, tav::messageEvent(tav::Message::duplicateInput));
  }
  checkReports(reports, found.several);
  found.reports = reports;
  return found;
}

int worseOf(int a, int b) {
  constexpr std::array kRanks{kDone, kDiffers, kIncomplete, kBelowBound, kNoDefinition, kFailed};
  const auto rank = [&](int code) { return std::find(kRanks.begin(), kRanks.end(), code); };
  return rank(a) < rank(b) ? b : a;
}

int guarded(const std::string& input, MessageLog& log, const std::function<int()>& read) {
  log.about = input;
  int code = kFailed;
  try {
    code = read();
  } catch (const TAVException& error) {
    log.clearProgress();
    log.logFailure(error.getMessage(), input);
  }
  log.about.clear();
  return code;
}

std::vector<std::string> nameModels(const std::vector<ModelName>& models) {
  std::unordered_map<std::string, std::size_t> counts;
  for (const ModelName& model : models) ++counts[tav::foldedName(model.name)];
  std::vector<std::string> names;
  names.reserve(models.size());
  for (const ModelName& model : models) {
    names.push_back(model.name);
    if (counts[tav::foldedName(model.name)] > 1)
      names.back().append(" (").append(tav::maskPasswords(placeOf(model.input))).append(")");
  }
  return names;
}

int forEachModel(AnswerInputs& inputs, MessageLog& log,
                 const std::function<void(const std::string& input, const tav::LineageGraph& graph)>& use) {
  int code = kDone;
  for (const std::string& input : inputs.paths) {
    code = worseOf(code, guarded(input, log, [&] {
                     return withModel({input, inputs.reports}, log, [&](const tav::DetailedModel& model) {
                       use(input, tav::LineageGraph(model, inputs.maps.of(input)));
                     });
                   }));
  }
  return code;
}

KeptModels::Kept::Kept(std::string from, KeptModel model, const tav::AddressMap& map)
    : input(std::move(from)), kept(std::move(model)), graph({*kept.model, kept.details.get()}, map) {}

int KeptModels::add(const std::string& input, const tav::AddressMap& map, MessageLog& log) {
  const Input opened = openInput(input, log);
  KeptModel kept;
  int code = kDone;
  if (opened.isSavedModel()) {
    tav::SavedModel saved = tav::loadSavedModel(opened.path());
    kept = {std::move(saved.model), std::move(saved.details)};
  } else {
    code = importModel(opened, log, kept);
  }
  if (kept.model) models_.emplace_back(input, std::move(kept), map);
  return code;
}

tav::DetailedModel KeptModels::model(std::size_t place) const {
  const KeptModel& kept = models_[place].kept;
  return {*kept.model, kept.details.get()};
}

std::vector<tav::JoinedModels::Model> KeptModels::named() const {
  std::vector<ModelName> models;
  models.reserve(models_.size());
  for (const Kept& model : models_) models.push_back({model.graph.modelName(), model.input});
  const std::vector<std::string> names = nameModels(models);
  std::vector<tav::JoinedModels::Model> result;
  result.reserve(models_.size());
  for (std::size_t i = 0; i < models_.size(); ++i) result.push_back({names[i], &models_[i].graph});
  return result;
}

int withModels(AnswerInputs& inputs, MessageLog& log,
               const std::function<void(const tav::JoinedModels& graph)>& use) {
  if (!inputs.several) {
    return withModel({inputs.paths.front(), inputs.reports}, log, [&](const tav::DetailedModel& model) {
      use(tav::LineageGraph(model, inputs.maps.of(inputs.paths.front())));
    });
  }
  KeptModels models;
  int code = kDone;
  for (const std::string& input : inputs.paths) {
    code = worseOf(code, guarded(input, log, [&] { return models.add(input, inputs.maps.of(input), log); }));
  }
  if (models.size() > 0) use(tav::JoinedModels(models.named()));
  return code;
}

}  // namespace host
