#pragma once

// Which database a connection leads to.

#include <string>
#include <string_view>

namespace tav {

/// The server and database of a connection string, under the names that lineage catalogues use for them.
/// Passwords are masked.
struct DatabaseAddress {
  /// The server as a URI: "mssql://warehouse.example:1433", "mssql://localhost:1433/SQL2019" with the name of
  /// an instance, "oracle://ledger.example:1521"; "connection://NAME" when the string names no server.
  std::string server;
  /// The database, or an Oracle service; empty when the string names none.
  std::string database;
  /// The schema of objects that are named without one; empty when the store has no such rule.
  std::string defaultSchema;
  /// Whether the model tells where the database is; not so for tables that belong to no connection.
  bool named = true;

  friend bool operator==(const DatabaseAddress&, const DatabaseAddress&) = default;
};

/// The address of tables that belong to no connection.
DatabaseAddress unnamedDatabase();

/// Reads a connection string. `connectionName` stands in for a server that it does not name; `dataStore` is
/// the name of the data store that is meant where no provider is named (see TAVDataTypeConstants).
DatabaseAddress parseDatabaseAddress(std::string_view connectionString, std::string_view connectionName,
                                     std::string_view dataStore);

/// The address of another server or database that a query names beside those of its connection. Empty names
/// mean the connection's own.
DatabaseAddress addressOf(const DatabaseAddress& connection, std::string_view server,
                          std::string_view database);

}  // namespace tav
