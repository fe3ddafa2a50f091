#pragma once

// What a host asks of a plug-in that imports models. The order of the virtual operations is part of the
// interface between them.

#include "framework/modelbridge/bridge_specification.h"
#include "framework/std/dll_interface.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "framework/std/option.h"

class TAVDirectoryStructureModel;
class TAVModel;

/// A plug-in that describes itself.
class TAV_API TAVBridgeDllInterface : public KORVDllInterface {
 public:
  TAVBridgeDllInterface() = default;
  TAVBridgeDllInterface(const TAVBridgeDllInterface&) = default;
  TAVBridgeDllInterface& operator=(const TAVBridgeDllInterface&) = default;
  ~TAVBridgeDllInterface() override;

  /// Fills the specification of the bridge with this identifier.
  virtual void getSpecification(const TAVString& bridgeIdentifier, TAVBridgeSpecification& specification) = 0;
  /// Replaces the list's content with the options of a run.
  virtual void getOptionList(TAVOptionList& options) = 0;
  /// Adds the versions of data stores that the bridge supports.
  virtual void getDataStoreList(TAVDataStoreList& dataStores) = 0;
  /// The name of the file that maps the tool's concepts to the model's, without its extension.
  virtual TAVString getMappingSpecificationXmlFile() = 0;

  /// Shows the model to the host's observer (see host_observer.h) and, unless that takes it over, saves it:
  /// the file is afterwards the whole new model, or what it was before when a TAVException is thrown.
  /// Failures are thrown, so the log, which may be null, gets nothing.
  static void saveStoreModel(const TAVFile& file, const TAVModel& model, TAVLog* log);
};

/// A plug-in that reads metadata and saves it as a model.
class TAV_API TAVImportBridgeDllInterface : public TAVBridgeDllInterface {
 public:
  TAVImportBridgeDllInterface() = default;
  TAVImportBridgeDllInterface(const TAVImportBridgeDllInterface&) = default;
  TAVImportBridgeDllInterface& operator=(const TAVImportBridgeDllInterface&) = default;
  ~TAVImportBridgeDllInterface() override;

  /// Imports what the options name and saves the model in `outputFile`. False when there was nothing to
  /// save; throws a TAVException when the import failed.
  virtual bool run(const TAVString& bridgeIdentifier, TAVFile& outputFile, TAVOptionList& options,
                   TAVLog& log) = 0;
  /// What there is to import at a place; throws UNSUPPORTED_BRIDGE_OPERATION when the bridge has no answer.
  virtual TAVDirectoryStructureModel* browse(const TAVString& bridgeIdentifier, const TAVString& place,
                                             TAVOptionList& options, TAVLog& log) = 0;
  /// Whether the options allow a run; what is wrong with them goes to the log.
  virtual bool test(const TAVString& bridgeIdentifier, TAVOptionList& options, TAVLog& log) = 0;
};
