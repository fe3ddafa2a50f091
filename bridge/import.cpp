#include "bridge/import.h"

#include "bridge/interface.h"
#include "bridge/tabular_import.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/modelbridge/bridge_constants.h"
#include "reader/reader.h"

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
  model->nativeType = "AS Database";
  return result;
}

tav::Owned<TAVMetadataOrigin> tav::describeOrigin(const TAVString& bridgeIdentifier,
                                                  const TAVFile& inputFile) {
  const TAVBridgeSpecificationLiteral& tool = BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT;
  const TAVString& version = getTAVMicrosoftSqlServerXMLAImportInterface()->getBuildVersion();
  Owned<TAVMetadataOrigin> origin =
      generateMetadataOrigin({tool.getTool_Name(), tool.getVendor_Name()}, bridgeIdentifier, version);
  origin->format = "XML";
  origin->encoding = "UTF-8";
  origin->path = inputFile.getPath();
  return origin;
}
