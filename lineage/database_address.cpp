#include "lineage/database_address.h"

#include <initializer_list>

#include "framework/std/mask.h"
#include "framework/types/data_store_version.h"
#include "lineage/server_location.h"

namespace tav {
namespace {

/// A kind that the definition names, and of which no more is known than the name: "vertica".
ServerKind otherKind(std::string_view name) {
  return {name, name, "", "", AddressForm::hostPort, TableNaming::databaseSchemaTable, {}};
}

/// A connection of which nothing tells the kind.
ServerKind unknownKind() {
  return {"", "connection", "", "", AddressForm::none, TableNaming::databaseSchemaTable, {}};
}

ServerKind kindOf(const ConnectionFacts& facts) {
  const ServerKind* known = serverKindOf(facts);
  // ODBC and OLE DB are what is left where nothing tells of the server behind them.
  const bool isGeneric = known && (known->name == "odbc" || known->name == "oledb");
  if (known && (!isGeneric || !facts.kind.empty())) return *known;
  if (!facts.kind.empty()) return otherKind(facts.kind);
  // An import of XML takes every provider that it does not know for SQL Server's.
  if (facts.dataStore == TAVDataTypeConstants::DATASTORE_MICROSOFT_SQL_SERVER) return sqlServerKind();
  if (facts.dataStore == TAVDataTypeConstants::DATASTORE_ORACLE) return oracleKind();
  return known ? *known : unknownKind();
}

std::string joined(std::initializer_list<std::string_view> parts, char separator) {
  std::string name;
  for (const std::string_view part : parts)
    if (!part.empty()) name.append(name.empty() ? 0 : 1, separator).append(part);
  return name;
}

}  // namespace

DatabaseAddress parseDatabaseAddress(const ConnectionFacts& facts) {
  const ServerKind kind = refinedKind(kindOf(facts), facts.connectionString);
  ServerLocation location = locateServer(kind, facts.connectionString);
  DatabaseAddress address{std::move(location.server), maskPasswords(location.database),
                          std::string(kind.defaultSchema), kind.naming};
  address.named = kind.form != AddressForm::hidden;
  address.isModel = kind.form == AddressForm::analysis && !address.database.empty();
  if (address.server.empty()) address.server = "connection://" + uriText(facts.name);
  return address;
}

DatabaseAddress unnamedDatabase() {
  DatabaseAddress address{"connection://unknown", {}, std::string(sqlServerKind().defaultSchema)};
  address.named = false;
  return address;
}

DatabaseAddress addressOf(const DatabaseAddress& connection, std::string_view server,
                          std::string_view database) {
  DatabaseAddress address = connection;
  if (!server.empty()) {
    address.server = sqlServerUri(server);
    address.named = true;
    address.isModel = false;
  }
  if (!database.empty()) address.database = maskPasswords(database);
  return address;
}

std::string catalogueName(const DatabaseAddress& address, std::string_view schema, std::string_view table) {
  switch (address.naming) {
    case TableNaming::schemaTable:
      return joined({schema, table}, '.');
    case TableNaming::slashes:
      return joined({address.database, table}, '/');
    case TableNaming::collection:
      return joined({"colls", table}, '/');
    case TableNaming::path:
      return joined({address.database, schema, table}, '/');
    case TableNaming::lakehouse:
      return joined({address.database, "Tables", schema, table}, '/');
    default:
      return joined({address.database, schema, table}, '.');
  }
}

}  // namespace tav
