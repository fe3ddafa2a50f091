#pragma once

// Data stores and their versions: what a model or a connection is stored in.

#include <span>

#include "framework/model/classes/system_package.h"
#include "framework/types/type_names.h"

/// The names of data stores and of the tools that write their definitions.
class TAV_API TAVDataTypeConstants {
 public:
  static constexpr std::string_view DATASTORE_MICROSOFT_DSV = "MICROSOFT_DSV";
  static constexpr std::string_view DATASTORE_MICROSOFT_SQL_SERVER = "MICROSOFT_SQL_SERVER";
  static constexpr std::string_view DATASTORE_ORACLE = "ORACLE";
  static constexpr std::string_view TOOL_MICROSOFT_DSV = "MICROSOFT_DSV";
};

/// One version of a data store. A plug-in keeps a table of the ones it knows.
class TAV_API TAVDataStoreVersion {
 public:
  TAVDataStoreVersion(TAVString dataStore, int major, int minor, int release);
  TAVDataStoreVersion(const TAVDataStoreVersion&) = default;
  TAVDataStoreVersion& operator=(const TAVDataStoreVersion&) = default;
  virtual ~TAVDataStoreVersion();

  /// Whether a tool of this version number reads this version of the data store: it reads its own version and
  /// every earlier one.
  [[nodiscard]] virtual bool isSupportedByToolVersion(int major, int minor, int release) const;
  /// The names that definitions of this data store have for their types; none when it has no names of its
  /// own. The rows are ordered by their native names in small letters, and live as long as the program.
  [[nodiscard]] virtual std::span<const tav::TypeNameRow> getTypeNames() const;

  [[nodiscard]] const TAVString& getDataStore() const noexcept { return dataStore_.name; }
  [[nodiscard]] int getMajor() const noexcept { return dataStore_.major; }
  [[nodiscard]] int getMinor() const noexcept { return dataStore_.minor; }
  [[nodiscard]] int getRelease() const noexcept { return dataStore_.release; }
  /// The same as a model keeps it.
  [[nodiscard]] const TAVDataStore& asAttribute() const noexcept { return dataStore_; }

 private:
  TAVDataStore dataStore_;
};

/// Tags a model or a connection with the data store it is stored in. Neither may be null.
TAV_API void setDataStore(TAVSystemPackage* systemPackage, const TAVDataStoreVersion* dataStoreVersion);
