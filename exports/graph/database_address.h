#pragma once

// Which database a connection leads to.

#include <string>
#include <string_view>

namespace tav {

/// The server and database of a connection string, under the names that lineage catalogues use for them.
struct DatabaseAddress {
  /// The server as a URI, "mssql://warehouse.example:1433", "oracle://ledger.example:1521"; a text made from
  /// the connection's name when its string names no server.
  std::string server;
  /// The database, or an Oracle service; empty when the string names none.
  std::string database;
  /// The schema of objects that are named without one; empty when the store has no such rule.
  std::string defaultSchema;

  friend bool operator==(const DatabaseAddress&, const DatabaseAddress&) = default;
};

/// Reads a connection string. `connectionName` stands in for a server that it does not name.
DatabaseAddress parseDatabaseAddress(std::string_view connectionString, std::string_view connectionName);

}  // namespace tav
