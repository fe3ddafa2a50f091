#include "host/inputs/estate_model.h"

#include <algorithm>
#include <filesystem>

#include "framework/std/text.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr char kModelMark = '#';

/// How well a model fits what it is called, best first.
enum class Fit : std::uint8_t { name, ending, none };

bool endsInPath(std::string_view source, std::string_view path) {
  return source.size() > path.size() && source.ends_with(path) &&
         source[source.size() - path.size() - 1] == '/';
}

Fit fitOf(const tav::EstateModel& model, const std::string& name) {
  if (tav::equalNames(model.name, name)) return Fit::name;
  return endsInPath(model.source, name) ? Fit::ending : Fit::none;
}

/// The models that fit a name best of all.
std::vector<tav::EstateModel> fittingModels(const std::string& path, const std::string& name) {
  std::vector<tav::EstateModel> found;
  Fit best = Fit::ending;
  for (tav::EstateModel& model : tav::modelsOf(path)) {
    const Fit fit = fitOf(model, name);
    if (fit > best) continue;
    if (fit < best) found.clear();
    best = fit;
    found.push_back(std::move(model));
  }
  return found;
}

}  // namespace

std::string shortList(const std::vector<std::string>& names) {
  constexpr std::size_t kListed = 10;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kListed); ++i)
    text.append(text.empty() ? "" : ", ").append(names[i]);
  if (names.size() > kListed)
    text.append(" and ").append(std::to_string(names.size() - kListed)).append(" more");
  return text;
}

std::optional<EstatePlace> estatePlace(const std::string& argument) {
  std::error_code ignored;  // what cannot be asked for is told by whoever opens it
  if (std::filesystem::exists(argument, ignored)) {
    // Of a pipe, what a look at its beginning takes is gone.
    const bool isFile = std::filesystem::is_regular_file(argument, ignored);
    if (!isFile || !tav::isEstate(argument)) return std::nullopt;
    return EstatePlace{argument, {}};
  }
  for (std::size_t at = argument.find(kModelMark); at != argument.npos;
       at = argument.find(kModelMark, at + 1))
    if (std::string path = argument.substr(0, at); tav::isEstate(path))
      return EstatePlace{std::move(path), argument.substr(at + 1)};
  return std::nullopt;
}

std::vector<tav::EstateModel> modelsIn(const EstatePlace& place) {
  if (place.model.empty()) return tav::modelsOf(place.path);
  std::vector<tav::EstateModel> found = tav::modelsOf(place.path, place.model);
  if (found.empty()) found = fittingModels(place.path, place.model);
  if (found.size() == 1) return found;
  std::vector<std::string> names;
  names.reserve(found.size());
  for (const tav::EstateModel& model : found) names.push_back(estateArgument(place.path, model));
  tav::fail(tav::Message::unknownInEstate, {place.path, found.empty() ? "no model" : "several models",
                                            place.model, found.empty() ? "" : ": " + shortList(names)});
}

std::optional<tav::EstateModel> storedModel(const std::string& argument) {
  const auto place = estatePlace(argument);
  if (!place || place->model.empty()) return std::nullopt;
  return modelsIn(*place).front();
}

std::string estateArgument(const std::string& path, const tav::EstateModel& model) {
  return path + kModelMark + model.source;
}

MemoryFile documentIn(const EstatePlace& place, const tav::EstateModel& model) {
  if (!model.version) tav::fail(tav::Message::modelNotKept, {place.path, model.source});
  MemoryFile file(estateArgument(place.path, model));
  file.write(tav::documentOf(place.path, model.source, *model.version));
  return file;
}

}  // namespace host
