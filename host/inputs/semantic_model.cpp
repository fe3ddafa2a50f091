#include "host/inputs/semantic_model.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "framework/std/string.h"
#include "host/inputs/extension.h"
#include "host/inputs/json_object.h"
#include "host/inputs/listing.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kJsonDefinition = "model.bim";
constexpr const char* kReportDefinition = "definition.pbir";

/// A file that says what the folder it is in is called, and where in it.
struct NameFile {
  const char* file;
  const char* pointer;
};
/// The later one is of an older version.
constexpr std::array kNameFiles{NameFile{".platform", "/metadata/displayName"},
                                NameFile{"item.metadata.json", "/displayName"}};

bool holdsTmdl(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (hasExtension(entry->path().string(), ".tmdl")) return true;
  return false;
}

/// What is called so may hold it where nobody can say.
bool mayHoldTmdl(const fs::path& folder) {
  return holdsTmdl(folder) || !causeOfUnlisted(folder).empty();
}

fs::path plainFolder(const std::string& folder) {
  const fs::path plain = fs::absolute(folder).lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

/// The name that a file in the folder says; empty when none does.
std::string toldName(const fs::path& folder) {
  for (const NameFile& file : kNameFiles) {
    std::string name = jsonTextAt(readJsonObject((folder / file.file).string()).json, file.pointer);
    if (!name.empty()) return name;
  }
  return {};
}

/// The folder that the files about a model are in, some of which has its definition in a folder of its own.
fs::path itemFolder(const fs::path& folder) {
  return plainFolder(folder.string()).filename() == "definition" ? folder / ".." : folder;
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
  const JsonObject report = readJsonObject((folder / kReportDefinition).string());
  const std::string path = jsonTextAt(report.json, "/datasetReference/byPath/path");
  if (!path.empty()) return {(folder / path).lexically_normal().string(), folder.string(), {}};
  if (report.json.contains(nlohmann::json::json_pointer("/datasetReference/byConnection"))) {
    return {
        {},
        {},
        "a report on a model that is kept in the service, not in this folder; export the model from there"};
  }
  const std::string unlisted = causeOfUnlisted(folder);
  std::string cause = unlisted.empty() ? "a report whose definition.pbir names no model"
                                       : "a report whose folder cannot be read: " + unlisted;
  return {{}, folder.string(), std::move(cause), !report.cause.empty()};
}

ReportLink followProject(const fs::path& file) {
  const JsonObject project = readJsonObject(file.string());
  if (!project.cause.empty())
    return {{}, {}, "a project of Power BI that leads to no report: " + project.cause};
  const std::string report = jsonTextAt(project.json, "/artifacts/0/report/path");
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
  else if (mayHoldTmdl(path / "definition"))
    model.path = (path / "definition").string();
  else if (holdsTmdl(path))
    model.path = folder;
  else
    return std::nullopt;
  model.name = toldName(itemFolder(path));
  model.named = !model.name.empty();
  if (!model.named) model.name = nameOfFolder(folder);
  return model;
}

ReportLink followReport(const std::string& path) {
  std::error_code ignored;  // what cannot be asked for is not there
  if (hasExtension(path, ".pbip")) return followProject(path);
  if (hasExtension(path, ".pbir")) return followDefinition(fs::path(path).parent_path());
  if (fs::is_regular_file(fs::path(path) / kReportDefinition, ignored) ||
      (hasExtension(path, ".report") && !causeOfUnlisted(path).empty()))
    return followDefinition(path);
  return {};
}

std::string nameOfItem(const std::string& folder) {
  const std::string name = toldName(plainFolder(folder));
  return name.empty() ? plainFolder(folder).stem().string() : name;
}

std::optional<NameFault> faultOfName(const std::string& folder) {
  for (const NameFile& file : kNameFiles) {
    const std::string path = (itemFolder(folder) / file.file).lexically_normal().string();
    std::error_code ignored;  // what cannot be asked for is not there
    if (!fs::exists(fs::symlink_status(path, ignored))) continue;
    const JsonObject read = readJsonObject(path);
    if (!read.cause.empty()) return NameFault{path + read.place, read.cause};
    if (jsonTextAt(read.json, file.pointer).empty()) return NameFault{path, "it says no displayName"};
  }
  return std::nullopt;
}

std::string modelName(const std::string& own, const std::string& name, bool named) {
  const bool given = own.empty() || own == "Model" || own == "SemanticModel" || isGuid(own);
  return !name.empty() && (named || given) ? name : own;
}

}  // namespace host
