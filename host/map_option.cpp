#include "host/map_option.h"

#include "exports/versions.h"
#include "host/inputs/estate_model.h"
#include "host/inputs/file_text.h"
#include "messages/message.h"

namespace host {

Option addMap(const CommandParser& parser, std::string& path) {
  return parser
      .addOption("--map FILE", path,
                 "Rules that give servers, databases and schemas other names (see docs/openlineage.md)")
      .check([](const std::string& name) { return name.empty() ? "the name of the file is empty" : ""; });
}

GivenMap readMap(const std::string& path) {
  if (path.empty()) return std::nullopt;
  const FileText file = readFileText(path);
  if (!file.error.empty()) tav::fail(tav::Message::inputNotRead, {path, file.error});
  return tav::AddressMap::parse(file.text, path);
}

const tav::AddressMap& InputMaps::of(const std::string& input) {
  if (given_) return *given_;
  const auto place = estatePlace(input);
  if (!place) return none_;
  const auto [known, isNew] = estates_.try_emplace(place->path);
  if (isNew) known->second = tav::AddressMap::parse(tav::addressRulesOf(place->path), place->path);
  return known->second;
}

const tav::AddressMap& InputMaps::ofBoth(const std::string& before, const std::string& after) {
  const tav::AddressMap& first = of(before);
  return first.empty() ? of(after) : first;
}

}  // namespace host
