#include "bridge/catalogue/literals.h"
#include "bridge/import.h"
#include "framework/bridgelib/types.h"
#include "framework/modelbridge/host_observer.h"
#include "reader/reader.h"

bool TAVSQLServerXMLAImportBridge::importFile(const TAVString& bridgeIdentifier, TAVStoreModel* model,
                                              TAVFile inputFile) {
  file_ = std::move(inputFile);
  model_ = model;
  if (!file_.exists()) QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN.throwException(file_.getPath());
  readDocument();
  factorizeTypes(*model_, 0, 0);
  if (model_->metadataOrigins.empty())
    model_->addMetadataOrigin(tav::describeOrigin(bridgeIdentifier, file_));
  cleanUp();
  return true;
}

bool TAVSQLServerXMLAImportBridge::readDocument() {
  dom_ = std::make_unique<TAVDOM>(log_);
  dom_->setProgress(tav::reportParsed);
  root_ = dom_->parseFile(file_);
  if (root_) importDocument(*root_);
  return true;
}
