#include "bridge/import.h"

#include "bridge/tabular_import.h"
#include "framework/model/roles.h"
#include "reader/origin.h"
#include "reader/reader.h"
#include "reader/run/import_types.h"

namespace {

// Tabular definitions are often one line of many megabytes; its start is enough.
constexpr std::int64_t kLineStart = 4096;

constexpr std::int32_t kOriginCode = 315;

bool isJson(TAVFile file) {
  file.open(1);
  while (!file.isEndOfFile()) {
    const TAVString line = file.getFullLine(kLineStart).trim();
    if (!line.empty()) return line.startsWith("{", true);
  }
  return false;
}

}  // namespace

TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log) {
  const bool json = isJson(inputFile);
  return execAsImport(bridgeIdentifier, std::move(inputFile), log, json);
}

TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log, bool json) {
  if (json) return importTabularModel(log, inputFile);
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
