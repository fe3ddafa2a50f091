#include "reader/connection_string.h"

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

/// Line ends and tabs as blanks, and never two blanks in a row.
TAVString squeezed(std::string_view text) {
  std::string result;
  for (char c : text) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    if (c != ' ' || result.empty() || result.back() != ' ') result += c;
  }
  return result;
}

}  // namespace

TAVString getConnectionStringValue(const TAVString& connectionString, const TAVString& key) {
  const TAVString text = squeezed(connectionString);
  const std::int32_t at = text.toLower().find(key.toLower());
  if (at < 0) return {};
  TAVString value = text.mid(at + key.length());
  const std::int32_t end = value.find(";");
  if (end >= 0) value = value.left(end);
  return value.replaceAll("=", "").replaceAll("\"", "").trimSpaces();
}

const TAVDataStoreVersion* findDataStoreByProvider(const TAVString& provider) {
  const TAVString wanted = provider.toLower();
  for (const DatabaseMap& row : kProviders)
    if (wanted == row.provider()) return &row;
  return &kProviders.front();
}
