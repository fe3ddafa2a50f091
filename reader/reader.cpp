#include "reader/reader.h"

#include "bridge/catalogue/literals.h"
#include "framework/bridgelib/types.h"
#include "framework/modelbridge/host_observer.h"
#include "reader/clean_up.h"
#include "reader/database.h"
#include "reader/document.h"
#include "reader/elements/annotations.h"
#include "reader/origin.h"
#include "reader/run/vocabulary.h"

TAVSQLServerXMLAImportBridge::TAVSQLServerXMLAImportBridge(TAVLog* log)
    : run_(std::make_unique<tav::ImportRun>(log)) {}

TAVSQLServerXMLAImportBridge::~TAVSQLServerXMLAImportBridge() {
  try {
    cleanUp();
  } catch (...) {
    // Only for want of memory. Then IDs stay in the model, which points nowhere but into itself all the same.
  }
}

bool TAVSQLServerXMLAImportBridge::importFile(const TAVString& identifier, TAVStoreModel* model,
                                              TAVFile file) {
  cleanUp();
  run_ = std::make_unique<tav::ImportRun>(run_->log);
  run_->model = model;
  run_->file = std::move(file);
  if (tav::areDetailsWanted()) run_->details = std::make_unique<tav::Details>();
  importing_ = true;
  if (!run_->file.exists()) QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN.throwException(run_->file.getPath());
  readDocument();
  factorizeTypes(*model, 0, 0);
  if (model->metadataOrigins.empty()) model->addMetadataOrigin(tav::describeOrigin(identifier, run_->file));
  cleanUp();
  if (run_->details) tav::reportDetails(std::move(run_->details));
  return true;
}

void TAVSQLServerXMLAImportBridge::readDocument() {
  run_->document = std::make_unique<TAVDOM>(run_->log);
  run_->document->setProgress(tav::reportParsed);
  run_->document->setUnkept(tav::kDrawings);
  const TAVDOMElement* root = run_->document->parseFile(run_->file);
  const TAVDOMElement* database = root ? tav::findDatabase(*root) : nullptr;
  if (!database) return;
  // An element of another name is read as a database all the same; whether it was one shows in the model.
  if (database->getTagName() == tav::xmla::kDatabase) tav::reportDatabase();
  tav::importDatabase(*run_, *database);
}

void TAVSQLServerXMLAImportBridge::cleanUp() {
  if (!importing_) return;  // what is left is the caller's, who may have deleted the model
  importing_ = false;
  run_->records.dimensions.empty();
  run_->records.cubes.empty();
  run_->columns.clear();
  run_->dimensions.clear();
  run_->document.reset();
  run_->types.release();
  tav::cleanModel(*run_->model, run_->details.get());
}

TAVString TAVSQLServerXMLAImportBridge::importTypeName(const TAVString& dataType) {
  return run_->types.nameOf(dataType);
}

TAVDerivedType& TAVSQLServerXMLAImportBridge::getDerivedType(const TAVString& typeName,
                                                             const TAVString& nativeDataType) {
  return tav::fetchDerivedType(*run_->model, typeName, nativeDataType);
}

TAVMeasure& TAVSQLServerXMLAImportBridge::createMeasure(TAVClassifier& owner,
                                                        const MeasureDescription& measure, bool plainAdd) {
  return tav::createMeasure(owner, measure, plainAdd);
}

TAVMeasure& TAVSQLServerXMLAImportBridge::createMeasurePair(const MeasureDescription& measure,
                                                            const TAVString& dataType,
                                                            const TAVString& expression,
                                                            TAVDimension& measureGroup, TAVCube& cube) {
  return tav::createMeasurePair(*run_, measure, dataType, expression, measureGroup, cube);
}
