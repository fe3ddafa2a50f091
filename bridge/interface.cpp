#include "bridge/interface.h"

#include <array>

#include "bridge/catalogue/build_version.h"
#include "bridge/catalogue/literals.h"
#include "bridge/import.h"
#include "framework/bridgelib/input_files.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/modelbridge/bridge_constants.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/std/exception.h"
#include "reader/run/import_types.h"

using Interface = TAVMicrosoftSqlServerXMLAImportDllInterface;

Interface::TAVMicrosoftSqlServerXMLAImportDllInterface() = default;
Interface::TAVMicrosoftSqlServerXMLAImportDllInterface(const Interface& other) = default;
Interface& Interface::operator=(const Interface& other) = default;
Interface::~TAVMicrosoftSqlServerXMLAImportDllInterface() = default;

Interface* getTAVMicrosoftSqlServerXMLAImportInterface() {
  static Interface interface;
  return &interface;
}

const TAVString& Interface::getBuildVersion() {
  if (buildVersion_.empty()) buildVersion_ = tav::getBuildVersion();
  return buildVersion_;
}

void Interface::getSpecification(const TAVString& bridgeIdentifier, TAVBridgeSpecification& specification) {
  const TAVBridgeSpecificationLiteral* literal = getBridgeSpecification(bridgeIdentifier);
  if (!literal) literal = &BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT;
  const TAVString& key = literal->getInternalCode_DescriptionLiteralId();
  const TAVTextLiteral* description = QVT_SSXMLA::findTextLiteral(key);
  specification.initialize(literal->getTool_Web(), literal->getVendor_Name(), literal->getTool_Name(),
                           literal->getTool_Versions(), literal->getMethodology_Summary(), getBuildVersion(),
                           description ? description->getText() : "*** " + key, false);
}

void Interface::getOptionList(TAVOptionList& options) {
  static constexpr std::array<const char*, 3> kExtensions{"xmla", "asdatabase", nullptr};
  options.removeAll();
  options.add(QVT_SSXMLA::BP_FILE.generateOption(true, kExtensions.data(), OpenMode::read, true));
}

void Interface::getDataStoreList(TAVDataStoreList& dataStores) {
  const TAVString& dataStore = kDataSourceViewStore.getDataStore();
  dataStores.add("9.0 (2005) to 10.0 (2008)", dataStore, 9, 0, 0);
  dataStores.add("9.0 (2005) to 10.0 (2008)", dataStore, 10, 0, 0);
}

TAVString Interface::getMappingSpecificationXmlFile() {
  return "TAVMicrosoftSqlServerXMLAImport";
}

bool Interface::run(const TAVString& bridgeIdentifier, TAVFile& outputFile, TAVOptionList& options,
                    TAVLog& log) {
  const TAVOption* option = options.get(QVT_SSXMLA::BP_FILE.getKey());
  if (!option) tav::fail("TAVBRIDGE_F0003", "The options hold no option 'BP_FILE'.");
  tav::Owned<TAVStoreModel> model(execAsImport(bridgeIdentifier, TAVFile(option->getValue()), &log));
  if (!model) return false;
  tav::reportMade(*model);
  if (model->getName().empty()) model->setName("Undefined");
  setModelModificationTime(*model, options);
  saveStoreModel(outputFile, *model, &log);
  tav::reportDone(std::move(model));
  return true;
}

TAVDirectoryStructureModel* Interface::browse(const TAVString& /*bridgeIdentifier*/,
                                              const TAVString& /*place*/, TAVOptionList& /*options*/,
                                              TAVLog& /*log*/) {
  UNSUPPORTED_BRIDGE_OPERATION.throwException("MicrosoftSqlServerXMLAImport", "browse");
}

bool Interface::test(const TAVString& /*bridgeIdentifier*/, TAVOptionList& options, TAVLog& log) {
  return testRequiredInputFiles(options, log, true);
}
