#include "host/inputs/semantic_model.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "framework/std/string.h"
#include "host/inputs/extension.h"
#include "host/inputs/file_text.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kJsonDefinition = "model.bim";
constexpr const char* kReportDefinition = "definition.pbir";

/// A small file of JSON; discarded when it is none.
Json readJson(const fs::path& file) {
  return Json::parse(readFileText(file.string()).text, nullptr, false);
}

/// A text by the names that lead to it; empty when there is none.
std::string textAt(const Json& json, const char* pointer) {
  const Json::json_pointer place(pointer);
  if (!json.is_structured() || !json.contains(place)) return {};
  const Json& value = json[place];
  return value.is_string() ? value.get<std::string>() : std::string();
}

bool holdsTmdl(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (hasExtension(entry->path().string(), ".tmdl")) return true;
  return false;
}

std::string toldName(const fs::path& folder) {
  const std::string name = textAt(readJson(folder / ".platform"), "/metadata/displayName");
  return name.empty() ? textAt(readJson(folder / "item.metadata.json"), "/displayName") : name;
}

fs::path plainFolder(const std::string& folder) {
  const fs::path plain = fs::absolute(folder).lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

std::string nameOfFolder(const std::string& folder) {
  fs::path path = plainFolder(folder);
  if (path.filename() == "definition") path = path.parent_path();
  return isSemanticModelName(path.string()) ? path.stem().string() : path.filename().string();
}

bool isGuid(const std::string& name) {
  constexpr std::size_t kLength = 36;
  return name.size() == kLength && std::all_of(name.begin(), name.end(), [](char c) {
           return c == '-' || std::isxdigit(static_cast<unsigned char>(c)) != 0;
         });
}

ReportLink followDefinition(const fs::path& folder) {
  const Json report = readJson(folder / kReportDefinition);
  const std::string path = textAt(report, "/datasetReference/byPath/path");
  if (!path.empty()) return {(folder / path).lexically_normal().string(), folder.string(), {}};
  if (report.is_object() && report.contains(Json::json_pointer("/datasetReference/byConnection"))) {
    return {
        {},
        {},
        "a report on a model that is kept in the service, not in this folder; export the model from there"};
  }
  return {{}, folder.string(), "a report whose definition.pbir names no model", report.is_discarded()};
}

ReportLink followProject(const fs::path& file) {
  const Json project = readJson(file);
  const std::string report = textAt(project, "/artifacts/0/report/path");
  if (report.empty()) return {{}, {}, "a project of Power BI that names no report"};
  return followDefinition(file.parent_path() / report);
}

}  // namespace

bool isSemanticModelName(const std::string& folder) {
  return hasExtension(folder, ".semanticmodel") || hasExtension(folder, ".dataset");
}

std::optional<FolderModel> findFolderModel(const std::string& folder) {
  const fs::path path(folder);
  std::error_code ignored;  // what cannot be asked for is not there
  FolderModel model;
  if (fs::is_regular_file(path / kJsonDefinition, ignored))
    model.path = (path / kJsonDefinition).string();
  else if (holdsTmdl(path / "definition"))
    model.path = (path / "definition").string();
  else if (holdsTmdl(path))
    model.path = folder;
  else
    return std::nullopt;
  model.name = toldName(plainFolder(folder).filename() == "definition" ? path / ".." : path);
  model.named = !model.name.empty();
  if (!model.named) model.name = nameOfFolder(folder);
  return model;
}

ReportLink followReport(const std::string& path) {
  std::error_code ignored;  // what cannot be asked for is not there
  if (hasExtension(path, ".pbip")) return followProject(path);
  if (hasExtension(path, ".pbir")) return followDefinition(fs::path(path).parent_path());
  if (fs::is_regular_file(fs::path(path) / kReportDefinition, ignored)) return followDefinition(path);
  return {};
}

std::string nameOfItem(const std::string& folder) {
  const std::string name = toldName(plainFolder(folder));
  return name.empty() ? plainFolder(folder).stem().string() : name;
}

std::string modelName(const std::string& own, const std::string& name, bool named) {
  const bool given = own.empty() || own == "Model" || own == "SemanticModel" || isGuid(own);
  return !name.empty() && (named || given) ? name : own;
}

}  // namespace host
