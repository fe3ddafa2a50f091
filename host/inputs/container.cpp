#include "host/inputs/container.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/inputs/archive.h"
#include "host/inputs/file_text.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr const char* kDefinition = "DataModelSchema";
constexpr const char* kReport = "Report/";

/// What an archive without a definition is, and what to do.
std::string causeWithout(const Archive& archive) {
  if (archive.holds("DataModel")) {
    return "a report that is saved with its data, the model in binary form; in Power BI Desktop, save it as "
           "a "
           "template (.pbit) or as a project (.pbip)";
  }
  if (archive.holds("Report/Layout") || archive.holds("Connections"))
    return "a report without a model of its own; give the definition of the model that it is connected to";
  if (archive.holds("xl/workbook.xml")) return "an Excel workbook, which is no definition that can be read";
  if (archive.holds("word/document.xml")) return "a Word document, which is no definition";
  return "a zip archive without a model (DataModelSchema); unpack it and name the definition in it";
}

/// Why a template has no model; empty when it has one, or is for the importer to judge.
std::string causeOfEmptiness(const std::string& definition) {
  constexpr int kDepthOfTables = 3;
  const auto outline = nlohmann::json::parse(
      definition,
      [](int depth, nlohmann::json::parse_event_t /*event*/, nlohmann::json& /*value*/) {
        return depth <= kDepthOfTables;
      },
      false);
  if (!outline.is_object() || !outline.contains("model") || !outline["model"].is_object()) return {};
  if (!outline["model"].contains("tables"))
    return "a template without a model: its report is connected to a model elsewhere; give the definition of "
           "that";
  if (outline["model"]["tables"].empty()) return "a template whose model has no tables";
  return {};
}

}  // namespace

bool isContainer(std::string_view beginning) {
  return beginning.starts_with("PK\x03\x04") || beginning.starts_with("PK\x05\x06");
}

Container readContainer(const std::string& path, const std::string& name) {
  try {
    const std::unique_ptr<Archive> archive = archives().open(path);
    if (!archive->holds(kDefinition)) return {{}, causeWithout(*archive), false};
    Container container{asUtf8(archive->read(kDefinition)), {}, false};
    container.cause = causeOfEmptiness(container.definition);
    for (const std::string& entry : archive->entries()) container.hasReport |= entry.starts_with(kReport);
    return container;
  } catch (const std::runtime_error& error) {
    tav::fail(tav::Message::containerNotRead, {name, error.what()});
  }
}

}  // namespace host
