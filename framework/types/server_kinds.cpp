#include "framework/types/server_kinds.h"

#include <algorithm>

#include "framework/model/model.h"
#include "framework/std/connection_string.h"

namespace tav {
namespace {

using Form = AddressForm;
using Naming = TableNaming;
constexpr Naming kThreeParts = Naming::databaseSchemaTable;

/// Marks are tried from the first row on: "IBM DB2 ODBC DRIVER" is no driver for any ODBC source, and "Amazon
/// Redshift" none for PostgreSQL.
constexpr std::array kKinds{
    ServerKind{"mashup", "connection", "", "", Form::hidden, kThreeParts, {"mashup.oledb", "powerbi.oledb"}},
    ServerKind{"oracle", "oracle", "1521", "", Form::oracle, kThreeParts, {"oracle", "oraoledb", "msdaora"}},
    ServerKind{
        "teradata", "teradata", "1025", "", Form::hostPort, Naming::databaseTable, {"teradata", "tdoledb"}},
    ServerKind{"db2", "db2", "50000", "", Form::hostPort, kThreeParts, {"db2"}},
    ServerKind{"redshift", "redshift", "5439", "public", Form::redshift, kThreeParts, {"redshift"}},
    ServerKind{"postgres",
               "postgres",
               "5432",
               "public",
               Form::hostPort,
               kThreeParts,
               {"postgres", "npgsql", "pgoledb"}},
    ServerKind{"mysql", "mysql", "3306", "", Form::hostPort, Naming::databaseTable, {"mysql", "mariadb"}},
    ServerKind{"ssas", "ssas", "", "", Form::analysis, kThreeParts, {"msolap"}},
    ServerKind{"snowflake", "snowflake", "", "", Form::snowflake, kThreeParts, {"snowflake"}},
    ServerKind{
        "unitycatalog", "unitycatalog", "", "", Form::hostPort, kThreeParts, {"databricks", "simba spark"}},
    ServerKind{"bigquery", "bigquery", "", "", Form::none, kThreeParts, {"bigquery"}},
    ServerKind{"athena", "awsathena", "", "", Form::athena, kThreeParts, {"athena"}},
    ServerKind{"trino", "trino", "8080", "", Form::hostPort, kThreeParts, {"trino"}},
    ServerKind{"hive", "hive", "10000", "", Form::hostPort, Naming::databaseTable, {"hive"}},
    ServerKind{"cassandra", "cassandra", "9042", "", Form::hostPort, Naming::databaseTable, {"cassandra"}},
    ServerKind{"saphana", "saphana", "", "", Form::hostPort, kThreeParts, {"hdbodbc", "sap hana"}},
    ServerKind{"sapbw", "sapbw", "", "", Form::hostPort, kThreeParts, {"mdrmsap"}},
    ServerKind{
        "mssql",
        "mssql",
        "1433",
        "dbo",
        Form::sqlServer,
        kThreeParts,
        {"sqlncli", "msoledbsql", "sqloledb", "sqlclient", "sql server", "sql native client", "sqlsrv32"}},
    ServerKind{"synapse", "sqlserver", "1433", "dbo", Form::sqlServer, Naming::schemaTable, {}},
    ServerKind{"fabric", "fabric-warehouse", "", "dbo", Form::sqlServer, kThreeParts, {}},
    ServerKind{"kusto", "azurekusto", "", "", Form::kusto, Naming::slashes, {}},
    ServerKind{"cosmos", "azurecosmos", "", "", Form::cosmos, Naming::collection, {}},
    ServerKind{"abfss", "abfss", "", "", Form::storage, Naming::path, {}},
    ServerKind{"wasbs", "wasbs", "", "", Form::storage, Naming::path, {}},
    ServerKind{"onelake", "abfss", "", "dbo", Form::storage, Naming::lakehouse, {}},
    ServerKind{"file", "file", "", "", Form::path, Naming::path, {}},
    ServerKind{"sharepoint", "mssharepoint", "443", "", Form::site, Naming::path, {}},
    ServerKind{"web", "https", "", "", Form::url, Naming::path, {}},
    ServerKind{"odata", "https", "", "", Form::url, Naming::path, {}},
    ServerKind{"hdfs", "hdfs", "", "", Form::hadoop, Naming::path, {}},
    ServerKind{"inline", "inmemory://", "", "", Form::none, kThreeParts, {}},
    ServerKind{"odbc", "odbc", "", "", Form::hostPort, kThreeParts, {}},
    ServerKind{"oledb", "oledb", "", "", Form::hostPort, kThreeParts, {}}};

constexpr const ServerKind& kindNamed(std::string_view name) {
  for (const ServerKind& kind : kKinds)
    if (kind.name == name) return kind;
  throw "no such kind";  // stops the compiler
}

/// User properties of a connection.
constexpr std::string_view kKindProperty = "kind";
constexpr std::string_view kProviderProperty = "provider";

constexpr const ServerKind& kSqlServer = kindNamed("mssql");
constexpr const ServerKind& kOracle = kindNamed("oracle");
constexpr const ServerKind& kOleDb = kindNamed("oledb");
constexpr const ServerKind& kOdbc = kindNamed("odbc");

}  // namespace

const ServerKind& sqlServerKind() {
  return kSqlServer;
}

const ServerKind& oracleKind() {
  return kOracle;
}

const ServerKind* findServerKind(std::string_view name) {
  const auto* const kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const ServerKind& one) { return one.name == name; });
  return kind == kKinds.end() ? nullptr : kind;
}

const ServerKind* serverKindOfScheme(std::string_view scheme) {
  const auto* const kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const ServerKind& one) { return one.scheme == scheme; });
  return kind == kKinds.end() ? nullptr : kind;
}

const ServerKind* serverKindOfProvider(std::string_view provider) {
  const std::string folded = foldCase(provider);
  for (const ServerKind& kind : kKinds)
    for (const std::string_view mark : kind.marks)
      if (!mark.empty() && folded.find(mark) != folded.npos) return &kind;
  return nullptr;
}

ConnectionFacts factsOf(const TAVStoreConnection& connection) {
  ConnectionFacts facts{connection.getName(), connection.connectionString, connection.dataStore.name, {}, {}};
  for (const TAVPropertyValue& property : connection.propertyValues) {
    const TAVPropertyType* type = property.propertyType.get();
    const std::string_view name = type ? type->getName().view() : std::string_view();
    if (name == kKindProperty) facts.kind = property.value;
    if (name == kProviderProperty) facts.provider = property.value;
  }
  return facts;
}

const ServerKind* serverKindOf(const ConnectionFacts& facts) {
  const ServerKind* told = findServerKind(facts.kind);
  // Through ODBC and OLE DB other kinds are reached, which the driver or provider tells.
  if (told ? told != &kOdbc && told != &kOleDb : !facts.kind.empty()) return told;
  const ConnectionString values(facts.connectionString);
  const std::string_view driver = values.get({"driver"});
  const std::string_view provider = values.get({"provider"});
  for (const std::string_view name : {provider, driver, facts.provider})
    if (const ServerKind* known = serverKindOfProvider(name)) return known;
  if (told) return told;
  if (!driver.empty() || !values.get({"dsn", "filedsn"}).empty()) return &kOdbc;
  return provider.empty() && facts.provider.empty() ? nullptr : &kOleDb;
}

}  // namespace tav
