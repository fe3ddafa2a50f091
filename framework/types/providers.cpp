#include "framework/types/providers.h"

#include <array>

namespace {

/// A data store with the OLE DB provider that reads it.
class DatabaseMap : public TAVDataStoreVersion {
 public:
  DatabaseMap(const char* provider, std::string_view dataStore, int major, int minor, int release)
      : TAVDataStoreVersion(dataStore, major, minor, release), provider_(provider) {}

  [[nodiscard]] const char* provider() const { return provider_; }

 private:
  const char* provider_;  // lower case
};

const std::array<DatabaseMap, 2> kProviders{
    DatabaseMap("sqlncli11.1", TAVDataTypeConstants::DATASTORE_MICROSOFT_SQL_SERVER, 11, 0, 0),
    DatabaseMap("oraoledb.oracle", TAVDataTypeConstants::DATASTORE_ORACLE, 11, 0, 0),
};

}  // namespace

const TAVDataStoreVersion* findDataStoreByProvider(const TAVString& provider) {
  const TAVString wanted = provider.toLower();
  for (const DatabaseMap& row : kProviders)
    if (wanted == row.provider()) return &row;
  return &kProviders.front();
}
