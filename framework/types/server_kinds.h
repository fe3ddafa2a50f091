#pragma once

// The kinds of servers, files and services that a connection may lead to: by which name catalogues know them,
// and how connections give them away.

#include <array>
#include <cstdint>
#include <string_view>

#include "framework/api.h"
#include "framework/model/class_list.h"

namespace tav {

/// How the address of a connection is read.
enum class AddressForm : std::uint8_t {
  none,       ///< there is only one such server
  hidden,     ///< stands in an embedded query, which the connection string does not show
  hostPort,   ///< `host`, `host:port`, `host,port` or a URL, of which only these count
  sqlServer,  ///< `host\instance,port` with what SQL Server knows besides
  oracle,     ///< `//host:port/service`, a descriptor or an alias
  snowflake,  ///< a host that begins with the account
  redshift,   ///< a host that begins with the cluster and holds the region
  kusto,      ///< a cluster or its URL
  cosmos,     ///< a URL; the database belongs to the server
  athena,     ///< a region
  analysis,   ///< a host, or a URL of a cloud service as it is
  url,        ///< scheme and host; the path is the database
  site,       ///< a URL whose path belongs to the server
  storage,    ///< a URL whose first folder is a container, or `scheme://container@host/path`
  path,       ///< a path of this or another computer
  hadoop,     ///< a URL of the web interface of a cluster
};

/// How a table is called behind the address of its server.
enum class TableNaming : std::uint8_t {
  databaseSchemaTable,
  databaseTable,  ///< schemas are databases
  schemaTable,
  slashes,     ///< database/table
  collection,  ///< colls/table
  path,        ///< folders and files, and sheets as files of a workbook
  lakehouse,   ///< item/Tables/schema/table
};

/// The kind of rows that stand in the definition itself.
inline constexpr std::string_view kInlineKind = "inline";

struct ServerKind {
  std::string_view name;    ///< as an importer notes it
  std::string_view scheme;  ///< of the server's URI
  std::string_view port;    ///< the usual one, which a URI names
  std::string_view defaultSchema;
  AddressForm form;
  TableNaming naming;
  /// What the names of its providers and drivers hold, in small letters.
  std::array<std::string_view, 7> marks;
};

/// SQL Server, Oracle: the kinds that have a data store of their own.
TAV_API const ServerKind& sqlServerKind();
TAV_API const ServerKind& oracleKind();

/// The kind of this name, or null.
TAV_API const ServerKind* findServerKind(std::string_view name);
/// The kind whose servers have URIs of this scheme, the first of several, or null.
TAV_API const ServerKind* serverKindOfScheme(std::string_view scheme);
/// The kind that an OLE DB provider, an ODBC driver or a managed provider reads, or null.
TAV_API const ServerKind* serverKindOfProvider(std::string_view provider);

/// What a definition says of the server behind a connection. The texts live as long as the connection.
struct ConnectionFacts {
  std::string_view name;
  std::string_view connectionString;
  std::string_view dataStore;  ///< see TAVDataTypeConstants
  std::string_view kind;       ///< the kind's name, as the importer of a tabular definition notes it
  std::string_view provider;   ///< where the connection string does not name it
};
TAV_API ConnectionFacts factsOf(const TAVStoreConnection& connection);

/// The kind that a definition gives away, or null: by its name, else by the provider or driver. The data
/// store is not asked, and a kind that is named but not known is none.
TAV_API const ServerKind* serverKindOf(const ConnectionFacts& facts);

}  // namespace tav
