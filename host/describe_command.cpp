#include <fmt/ostream.h>

#include <nlohmann/json.hpp>

#include "host/command.h"
#include "host/plugin.h"
#include "host/standard_output.h"

namespace host {
namespace {

struct Description {
  TAVString buildVersion;
  TAVBridgeSpecification specification;
  TAVOptionList options;
  TAVDataStoreList dataStores;
  TAVString mapping;
};

Description describePlugin() {
  TAVImportBridgeDllInterface& plugin = loadPlugin();
  Description description;
  description.buildVersion = plugin.getBuildVersion();
  plugin.getSpecification(kBridgeIdentifier, description.specification);
  plugin.getOptionList(description.options);
  plugin.getDataStoreList(description.dataStores);
  description.mapping = plugin.getMappingSpecificationXmlFile();
  return description;
}

std::string joined(const std::vector<TAVString>& texts) {
  std::string all;
  for (const TAVString& text : texts) all.append(all.empty() ? "" : ", ").append(text);
  return all;
}

void writeText(const Description& description, std::ostream& out) {
  const TAVBridgeSpecification& specification = description.specification;
  fmt::print(out, "Bridge        {}\n", kBridgeIdentifier);
  fmt::print(out, "Version       {}\n", description.buildVersion.view());
  fmt::print(out, "Reads         {} {}, versions {} ({})\n", specification.getVendorName().view(),
             specification.getToolName().view(), specification.getToolVersions().view(),
             specification.getMethodologySummary().view());
  for (const TAVDataStoreList::Entry& store : description.dataStores)
    fmt::print(out, "Data store    {} {}.{}.{}, \"{}\"\n", store.dataStore.view(), store.major, store.minor,
               store.release, store.label.view());
  for (const TAVOption& option : description.options) {
    fmt::print(out, "Option        {} ({}{}): {} Extensions: {}\n", option.getKey().view(),
               option.getName().view(), option.isMandatory() ? ", mandatory" : "",
               option.getDescription().view(), joined(option.getExtensions()));
  }
  fmt::print(out, "Mapping       {}\n\n{}", description.mapping.view(),
             specification.getDescription().view());
}

std::string_view typeName(OptionType type) {
  switch (type) {
    case OptionType::text:
      return "text";
    case OptionType::number:
      return "number";
    case OptionType::boolean:
      return "boolean";
    case OptionType::enumeration:
      return "enumeration";
    case OptionType::file:
      return "file";
    case OptionType::directory:
      return "directory";
  }
  return "";
}

nlohmann::ordered_json asJson(const TAVOption& option) {
  nlohmann::ordered_json extensions = nlohmann::ordered_json::array();
  for (const TAVString& extension : option.getExtensions()) extensions.push_back(extension.str());
  return {{"key", option.getKey().str()},
          {"name", option.getName().str()},
          {"description", option.getDescription().str()},
          {"type", typeName(option.getType())},
          {"default", option.getDefaultValue().str()},
          {"mandatory", option.isMandatory()},
          {"extensions", extensions},
          {"openMode", option.getOpenMode() == OpenMode::read ? "read" : "write"}};
}

void writeJson(const Description& description, std::ostream& out) {
  const TAVBridgeSpecification& specification = description.specification;
  nlohmann::ordered_json document{{"bridge", kBridgeIdentifier},
                                  {"version", description.buildVersion.str()},
                                  {"specification",
                                   {{"web", specification.getToolWeb().str()},
                                    {"vendor", specification.getVendorName().str()},
                                    {"tool", specification.getToolName().str()},
                                    {"versions", specification.getToolVersions().str()},
                                    {"methodology", specification.getMethodologySummary().str()},
                                    {"description", specification.getDescription().str()}}},
                                  {"options", nlohmann::ordered_json::array()},
                                  {"dataStores", nlohmann::ordered_json::array()},
                                  {"mappingSpecification", description.mapping.str()}};
  for (const TAVOption& option : description.options) document["options"].push_back(asJson(option));
  for (const TAVDataStoreList::Entry& store : description.dataStores) {
    document["dataStores"].push_back({{"label", store.label.str()},
                                      {"name", store.dataStore.str()},
                                      {"version", {store.major, store.minor, store.release}}});
  }
  out << document.dump(2) << '\n';
}

}  // namespace

Command addDescribe(CommandLine& program) {
  auto json = std::make_shared<bool>(false);
  const CommandParser parser = program.addCommand(
      "describe", "Show version, specification, options and data store versions of the plug-in");
  parser.addFlag("--json", *json, "Print one JSON document");
  return {parser, [json](MessageLog& /*log*/) {
            StandardOutput out;
            (*json ? writeJson : writeText)(describePlugin(), out.stream());
            out.finish();
            return kDone;
          }};
}

}  // namespace host
