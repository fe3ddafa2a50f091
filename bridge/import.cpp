#include "bridge/import.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "bridge/tabular_import.h"
#include "framework/dom/document_failure.h"
#include "framework/model/roles.h"
#include "reader/origin.h"
#include "reader/reader.h"
#include "reader/run/import_types.h"

namespace {

// Tabular definitions are often one line of many megabytes; its start is enough.
constexpr std::int64_t kLineStart = 4096;

constexpr std::int32_t kOriginCode = 315;

/// What a file in TMDL may begin with, beside descriptions.
constexpr std::array<std::string_view, 16> kTmdlWords{
    "database",       "model",       "table",       "relationship", "role",
    "culture",        "cultureInfo", "perspective", "function",     "expression",
    "dataSource",     "queryGroup",  "annotation",  "ref",          "extendedProperty",
    "createOrReplace"};

/// Folders are TMDL, which is the only form that has more than one file.
bool isTmdlPath(const TAVFile& file) {
  const std::filesystem::path path = file.getPath().str();
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return true;
  const TAVString extension = path.extension().string();
  return file.exists() && (extension.equals(".tmdl", false) || extension.equals(".tmd", false));
}

bool isTmdlLine(std::string_view line) {
  const std::string_view word = line.substr(0, line.find_first_of(" \t"));
  return std::find(kTmdlWords.begin(), kTmdlWords.end(), word) != kTmdlWords.end();
}

/// Whether the importer of tabular definitions reads it; anything else is XML.
bool isTabular(TAVFile file) {
  if (isTmdlPath(file)) return true;
  file.open(1);
  while (!file.isEndOfFile()) {
    const TAVString line = file.getFullLine(kLineStart).trim();
    if (!line.empty() && !line.startsWith("///", true)) return line.startsWith("{", true) || isTmdlLine(line);
  }
  // A tabular definition that could not be looked at would be said to be no XML.
  if (!file.getError().empty() && file.exists()) tav::failForDocument(file.getPath(), file.getError());
  return false;
}

}  // namespace

TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log) {
  const bool tabular = isTabular(inputFile);
  return execAsImport(bridgeIdentifier, std::move(inputFile), log, tabular);
}

TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log, bool tabular) {
  if (tabular) return importTabularModel(log, inputFile);
  auto model = tav::make<TAVStoreModel>();
  execAsImport(bridgeIdentifier, std::move(inputFile), model.get(), log);
  return model.release();
}

bool execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVStoreModel* model, TAVLog* log) {
  model->storeType = TAVStoreType(TAVStoreType::kDefinition);
  setDataStore(model, &kDataSourceViewStore);
  TAVSQLServerXMLAImportBridge reader(log);
  if (model->metadataOrigins.empty())
    model->addMetadataOrigin(tav::describeOrigin(bridgeIdentifier, inputFile));
  model->metadataOrigins.first()->code = kOriginCode;
  const bool result = reader.importFile(bridgeIdentifier, model, std::move(inputFile));
  model->nativeType = tav::label::kMultidimensionalDatabase;
  return result;
}
