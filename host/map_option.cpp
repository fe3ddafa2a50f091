#include "host/map_option.h"

#include "exports/versions.h"
#include "host/inputs/estate_model.h"
#include "host/inputs/file_text.h"
#include "messages/message.h"

namespace host {

CLI::Option& addMap(CLI::App& parser, std::string& path) {
  return *parser
              .add_option(
                  "--map", path,
                  "Rules that give servers, databases and schemas other names (see docs/openlineage.md)")
              ->type_name("FILE")
              ->check([](const std::string& name) {
                return name.empty() ? "the name of the file is empty" : "";
              });
}

GivenMap readMap(const std::string& path) {
  if (path.empty()) return std::nullopt;
  const FileText file = readFileText(path);
  if (!file.error.empty()) tav::fail(tav::Message::inputNotRead, {path, file.error});
  return tav::AddressMap::parse(file.text, path);
}

tav::AddressMap mapFor(const GivenMap& given, const std::string& input) {
  if (given) return *given;
  const auto place = estatePlace(input);
  return place ? tav::AddressMap::parse(tav::addressRulesOf(place->path), place->path) : tav::AddressMap();
}

}  // namespace host
