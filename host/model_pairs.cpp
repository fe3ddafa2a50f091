#include "host/model_pairs.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "exports/sqlite_model.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/inputs/estate_model.h"
#include "host/inputs/folder.h"
#include "host/model_input.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// The models of a place: what names each as an input, by its canonical path.
using Models = std::map<std::string, std::string>;

Models modelsOfPlace(const std::string& place) {
  Models models;
  if (const auto estate = estatePlace(place)) {
    for (const tav::EstateModel& model : modelsIn(*estate))
      models.emplace(model.source, estateArgument(estate->path, model));
    return models;
  }
  for (const std::string& path : modelsBelow(place)) models.emplace(tav::canonicalSource(path), path);
  return models;
}

/// The folder that all of them lie in, with the slash at its end.
std::string commonFolder(const Models& models) {
  if (models.empty()) return {};
  // Of texts in their order, what the first and the last have in common all of them have.
  const std::string& first = models.begin()->first;
  const std::string& last = models.rbegin()->first;
  const auto end = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
  const std::size_t slash = std::string_view(first).substr(0, end - first.begin()).rfind('/');
  return first.substr(0, slash == std::string::npos ? 0 : slash + 1);
}

std::string baseOf(const std::string& place, const Models& models) {
  std::error_code ignored;  // then it is an estate
  return fs::is_directory(place, ignored) ? tav::canonicalSource(place) + "/" : commonFolder(models);
}

Models below(const std::string& base, const Models& models) {
  Models result;
  for (const auto& [path, input] : models)
    result.emplace(path.starts_with(base) ? path.substr(base.size()) : path, input);
  return result;
}

bool haveCommonPaths(const Models& a, const Models& b) {
  return std::any_of(a.begin(), a.end(), [&](const auto& model) { return b.contains(model.first); });
}

int describe(const std::string& input, MessageLog& log, const std::function<void(std::string name)>& use) {
  return withModel({input}, log,
                   [&](const tav::DetailedModel& model) { use(tav::LineageGraph(model).modelName()); });
}

}  // namespace

bool holdsSeveral(const std::string& input) {
  if (estatePlace(input)) return isPlace(input);
  return isPlace(input) && definitionsIn(input).size() != 1 && !modelsBelow(input).empty();
}

bool isPlace(const std::string& input) {
  if (const auto estate = estatePlace(input)) return estate->model.empty();
  std::error_code ignored;  // what cannot be asked for is told by whoever opens it
  return fs::is_directory(input, ignored);
}

std::vector<ModelPair> pairModels(const std::string& before, const std::string& after) {
  Models old = modelsOfPlace(before);
  Models now = modelsOfPlace(after);
  if (!haveCommonPaths(old, now)) {
    old = below(baseOf(before, old), old);
    now = below(baseOf(after, now), now);
  }
  std::map<std::string, ModelPair> pairs;
  for (const auto& [key, input] : old) pairs[key].before = input;
  for (const auto& [key, input] : now) pairs[key].after = input;
  std::vector<ModelPair> result;
  for (auto& [key, pair] : pairs) {
    pair.key = key;
    result.push_back(std::move(pair));
  }
  return result;
}

int comparePair(const ModelPair& pair, InputMaps& maps, MessageLog& log,
                const std::function<void(const tav::EstateChange& change, const tav::ModelDiff* diff)>& use) {
  tav::EstateChange change;
  change.source = pair.key;
  if (pair.before.empty() || pair.after.empty()) {
    const std::string& only = pair.before.empty() ? pair.after : pair.before;
    return describe(only, log, [&](std::string name) {
      (pair.before.empty() ? change.after : change.before).emplace().name = std::move(name);
      use(change, nullptr);
    });
  }
  int newCode = kDone;
  // The second is read while the first, which an import deletes at its end, is there.
  const int code = withModel({pair.before}, log, [&](const tav::DetailedModel& old) {
    newCode = withModel({pair.after}, log, [&](const tav::DetailedModel& now) {
      const tav::ModelDiff diff = tav::compareModels(old, now, maps.ofBoth(pair.before, pair.after));
      change.before.emplace().name = diff.oldName;
      change.after.emplace().name = diff.newName;
      use(change, &diff);
    });
  });
  return worseOf(code, newCode);
}

}  // namespace host
