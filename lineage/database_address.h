#pragma once

// Which database a connection leads to.

#include <string>
#include <string_view>

#include "framework/types/server_kinds.h"

namespace tav {

/// The server and database of a connection string, under the names that lineage catalogues use for them.
/// Passwords are masked.
struct DatabaseAddress {
  /// The server as a URI: "mssql://warehouse.example:1433", "mssql://localhost:1433/SQL2019" with the name of
  /// an instance, "abfss://raw@lake.dfs.core.windows.net"; "file" and "bigquery" have no more than a scheme.
  /// "connection://NAME" when the connection names no server.
  std::string server;
  /// The database, an Oracle service, or the path of a folder or workbook; empty when there is none.
  std::string database;
  /// The schema of objects that are named without one; empty when the store has no such rule.
  std::string defaultSchema;
  TableNaming naming = TableNaming::databaseSchemaTable;
  /// Whether the model tells where the database is; not so for tables that belong to no connection, or to
  /// one whose server stands in an embedded query.
  bool named = true;
  /// Whether the database is a model of Analysis Services: its tables are dimensions and cubes.
  bool isModel = false;

  friend bool operator==(const DatabaseAddress&, const DatabaseAddress&) = default;
};

/// The address of tables that belong to no connection.
DatabaseAddress unnamedDatabase();

/// Reads what a definition says of a connection, whose name stands in for a server that it does not name.
DatabaseAddress parseDatabaseAddress(const ConnectionFacts& facts);

/// The address of another server or database that a query names beside those of its connection. Empty names
/// mean the connection's own.
DatabaseAddress addressOf(const DatabaseAddress& connection, std::string_view server,
                          std::string_view database);

/// What catalogues call a table: its name with database and schema as its kind of server has it.
std::string catalogueName(const DatabaseAddress& address, std::string_view schema, std::string_view table);

}  // namespace tav
