#pragma once

// The plug-in as its host sees it.

#include "framework/modelbridge/bridge_interface.h"

/// Imports Analysis Services databases. The plug-in holds one object of it, which the factory gives.
class TAV_API TAVMicrosoftSqlServerXMLAImportDllInterface : public TAVImportBridgeDllInterface {
 public:
  TAVMicrosoftSqlServerXMLAImportDllInterface();
  TAVMicrosoftSqlServerXMLAImportDllInterface(const TAVMicrosoftSqlServerXMLAImportDllInterface& other);
  TAVMicrosoftSqlServerXMLAImportDllInterface& operator=(
      const TAVMicrosoftSqlServerXMLAImportDllInterface& other);
  ~TAVMicrosoftSqlServerXMLAImportDllInterface() override;

  const TAVString& getBuildVersion() override;
  /// An identifier that the framework does not know stands for this bridge's own.
  void getSpecification(const TAVString& bridgeIdentifier, TAVBridgeSpecification& specification) override;
  void getOptionList(TAVOptionList& options) override;
  void getDataStoreList(TAVDataStoreList& dataStores) override;
  TAVString getMappingSpecificationXmlFile() override;
  /// Imports the file of the option BP_FILE, which `options` must hold. A model without a name is saved as
  /// "Undefined".
  bool run(const TAVString& bridgeIdentifier, TAVFile& outputFile, TAVOptionList& options,
           TAVLog& log) override;
  /// Always throws UNSUPPORTED_BRIDGE_OPERATION.
  TAVDirectoryStructureModel* browse(const TAVString& bridgeIdentifier, const TAVString& place,
                                     TAVOptionList& options, TAVLog& log) override;
  bool test(const TAVString& bridgeIdentifier, TAVOptionList& options, TAVLog& log) override;
};

/// The one interface object, made on the first call and destroyed when the plug-in is unloaded.
extern "C" TAV_API TAVMicrosoftSqlServerXMLAImportDllInterface* getTAVMicrosoftSqlServerXMLAImportInterface();
