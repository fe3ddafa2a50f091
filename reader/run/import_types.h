#pragma once

#include <optional>

#include "framework/model/model.h"
#include "framework/std/log.h"
#include "framework/types/data_store_version.h"
#include "framework/types/data_type_converter.h"

/// The data store that definitions and their data source views are kept in.
extern const TAVDataStoreVersion kDataSourceViewStore;

namespace tav {

/// The data types of a definition in the framework's names.
class ImportTypes {
 public:
  explicit ImportTypes(TAVLog* log) : log_(log) {}

  TAVString nameOf(const TAVString& dataType);
  /// The type of that name in the model. Of the texts that lead to one name, the type keeps the first.
  TAVDerivedType& fetch(TAVStoreModel& model, const TAVString& dataType);
  /// Lets go of the converter; the next name makes another.
  void release() { converter_.reset(); }

 private:
  TAVLog* log_;
  std::optional<TAVDataTypeConverter> converter_;  // made with the first name
};

}  // namespace tav
