#pragma once

#include <span>

#include "framework/std/log.h"
#include "framework/types/data_store_version.h"

/// Turns the type names of a source into the framework's.
class TAV_API TAVDataTypeConverter {
 public:
  /// A converter for definitions of a data store as a tool writes them. For a tool that the framework does
  /// not know there is one warning in `log`, which may be null, and only the data store's own names are
  /// known.
  TAVDataTypeConverter(TAVLog* log, const TAVDataStoreVersion& dataStoreVersion, const TAVString& toolName);

  /// The framework's name for a native type name, whose letter case does not matter. A name without a prefix
  /// is one of the data store's; with a prefix, or when the data store does not know it, it is one of the
  /// tool's, and its prefix does not matter. Every other text, and the empty one, is "undefined".
  [[nodiscard]] std::string_view getImportTypeName(std::string_view nativeTypeName) const;

 private:
  std::span<const tav::TypeNameRow> storeNames_;
  std::span<const tav::TypeNameRow> toolNames_;
};
