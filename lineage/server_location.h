#pragma once

// Where the server of a connection is: its URI, and the database that stands with it.

#include <string>
#include <string_view>

#include "framework/types/server_kinds.h"

namespace tav {

struct ServerLocation {
  std::string server;    ///< a URI; empty when the connection names no server
  std::string database;  ///< not masked
};

/// The kind of a server by its host: Azure's services that speak SQL Server's protocol have names of their
/// own.
ServerKind refinedKind(const ServerKind& kind, std::string_view connectionString);

ServerLocation locateServer(const ServerKind& kind, std::string_view connectionString);

/// The URI of a server of SQL Server's protocol by what connection strings call it.
std::string sqlServerUri(std::string_view source);

/// The same without scheme, and with a port only where `source` has one: "localhost/SQL2019" of `.\SQL2019`.
/// What is a URI already stays as it is.
std::string serverName(std::string_view source);

/// `raw` as a part of a URI; passwords are masked before, because behind the escapes nobody would find them.
std::string uriText(std::string_view raw);

}  // namespace tav
