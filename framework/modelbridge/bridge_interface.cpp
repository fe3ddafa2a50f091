#include "framework/modelbridge/bridge_interface.h"

#include "framework/model/model.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/model_writer.h"

TAVBridgeDllInterface::~TAVBridgeDllInterface() = default;
TAVImportBridgeDllInterface::~TAVImportBridgeDllInterface() = default;

void TAVBridgeDllInterface::saveStoreModel(const TAVFile& file, const TAVModel& model, TAVLog* /*log*/) {
  const auto* storeModel = tav::as<TAVStoreModel>(&model);
  if (storeModel && !tav::reportModel(*storeModel)) return;
  tav::saveModel(model, file.getPath(), tav::reportedDetails());
}
