#include "reader/run/import_types.h"

#include "framework/bridgelib/types.h"

const TAVDataStoreVersion kDataSourceViewStore(TAVDataTypeConstants::DATASTORE_MICROSOFT_DSV, 9, 0, 0);

namespace tav {

TAVString ImportTypes::nameOf(const TAVString& dataType) {
  if (!converter_) converter_.emplace(log_, kDataSourceViewStore, TAVDataTypeConstants::TOOL_MICROSOFT_DSV);
  return converter_->getImportTypeName(dataType);
}

TAVDerivedType& ImportTypes::fetch(TAVStoreModel& model, const TAVString& dataType) {
  return fetchDerivedType(model, nameOf(dataType), dataType);
}

}  // namespace tav
