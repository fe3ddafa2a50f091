#include "lineage/database_address.h"

#include <algorithm>
#include <array>

#include "framework/std/connection_string.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "framework/types/data_store_version.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// A kind of server: the scheme of its URIs, its usual port, and what the names of its providers and drivers
/// hold, folded.
struct ServerKind {
  std::string_view scheme;
  std::string_view port;
  std::string_view defaultSchema;
  std::array<std::string_view, 6> marks;
};

constexpr std::array kServerKinds{
    ServerKind{"oracle", "1521", "", {"oracle", "oraoledb", "msdaora"}},
    ServerKind{"teradata", "1025", "", {"teradata", "tdoledb"}},
    ServerKind{"db2", "50000", "", {"db2"}},
    ServerKind{"postgres", "5432", "public", {"postgres", "npgsql", "pgoledb"}},
    ServerKind{"mysql", "3306", "", {"mysql", "mariadb"}},
    ServerKind{"ssas", "", "", {"msolap"}},
    ServerKind{"mssql", "1433", "dbo", {"sqlncli", "msoledbsql", "sqloledb", "sqlclient", "sql server"}}};

const ServerKind& sqlServer() {
  return kServerKinds.back();
}

const ServerKind& kindOf(const ConnectionString& values, std::string_view dataStore) {
  const std::string provider = foldCase(values.get({"provider", "driver"}));
  for (const ServerKind& kind : kServerKinds)
    for (const std::string_view mark : kind.marks)
      if (!mark.empty() && provider.find(mark) != provider.npos) return kind;
  return provider.empty() && dataStore == TAVDataTypeConstants::DATASTORE_ORACLE ? kServerKinds.front()
                                                                                 : sqlServer();
}

/// What may stand in a URI as it is; everything else goes in as %XX. Passwords are masked before: behind the
/// escapes nobody would find them.
std::string uriText(std::string_view raw) {
  const std::string text = maskPasswords(raw);
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~$*:[]";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (kPlain.find(c) != kPlain.npos)
      result += c;
    else
      result.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
  return result;
}

struct Endpoint {
  std::string_view host;
  std::string_view port;
  std::string_view instance;
};

std::string serverUri(const ServerKind& kind, const Endpoint& endpoint) {
  std::string uri(kind.scheme);
  uri.append("://").append(uriText(endpoint.host));
  const std::string_view port = endpoint.port.empty() ? kind.port : endpoint.port;
  if (!port.empty()) uri.append(":").append(uriText(port));
  if (!endpoint.instance.empty()) uri.append("/").append(uriText(endpoint.instance));
  return uri;
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

/// Takes "tcp:" and its like from the front.
std::string_view withoutProtocol(std::string_view source) {
  for (const std::string_view protocol : {"tcp:", "np:", "lpc:", "admin:"})
    if (foldCase(source.substr(0, protocol.size())) == protocol) return source.substr(protocol.size());
  return source;
}

/// A pipe is named by the path `\\host\pipe\...`, with the instance in it as MSSQL$NAME.
Endpoint pipeEndpoint(std::string_view source) {
  source.remove_prefix(2);
  Endpoint endpoint{source.substr(0, source.find('\\')), {}, {}};
  constexpr std::string_view kMark = "mssql$";
  const std::size_t at = foldCase(source).find(kMark);
  if (at != source.npos) {
    const std::string_view name = source.substr(at + kMark.size());
    endpoint.instance = name.substr(0, name.find('\\'));
  }
  return endpoint;
}

bool isLocal(std::string_view host) {
  const std::string folded = foldCase(host);
  return folded == "." || folded == "(local)" || folded == "(localdb)";
}

/// `host`, `host,port`, `host\instance`, `host\instance,port`, with or without a protocol in front.
Endpoint sqlServerEndpoint(std::string_view source) {
  source = trimmed(withoutProtocol(source));
  Endpoint endpoint;
  if (source.starts_with("\\\\")) {
    endpoint = pipeEndpoint(source);
  } else {
    const std::size_t comma = source.find(',');
    if (comma != source.npos) endpoint.port = trimmed(source.substr(comma + 1));
    source = trimmed(source.substr(0, comma));
    const std::size_t slash = source.find('\\');
    if (slash != source.npos) endpoint.instance = trimmed(source.substr(slash + 1));
    endpoint.host = trimmed(source.substr(0, slash));
  }
  if (isLocal(endpoint.host)) endpoint.host = "localhost";
  return endpoint;
}

/// The value behind `key =` in a text of nested (key=value), folded.
std::string_view descriptorValue(std::string_view text, std::string_view folded, std::string_view key) {
  for (std::size_t at = folded.find(key); at != folded.npos; at = folded.find(key, at + 1)) {
    const std::size_t sign = folded.find_first_not_of(kBlanks, at + key.size());
    if (sign == folded.npos || folded[sign] != '=') continue;
    return trimmed(text.substr(sign + 1, text.find_first_of("()", sign) - sign - 1));
  }
  return {};
}

/// An endpoint with the database that stands with it.
struct Location {
  Endpoint endpoint;
  std::string_view database;
};

Location oracleDescriptor(std::string_view source, const std::string& folded) {
  Location location{{descriptorValue(source, folded, "host"), descriptorValue(source, folded, "port"), {}},
                    descriptorValue(source, folded, "service_name")};
  if (location.database.empty()) location.database = descriptorValue(source, folded, "sid");
  return location;
}

/// `host:port`, also of an IPv6 address in brackets.
Endpoint hostAndPort(std::string_view source) {
  const std::size_t colon = source.rfind(':');
  if (colon == source.npos || !isNumber(source.substr(colon + 1))) return {source, {}, {}};
  return {source.substr(0, colon), source.substr(colon + 1), {}};
}

/// `//host:port/service`, the same without the slashes in front, a descriptor, or an alias, which stands for
/// host and service at once.
Location oracleLocation(std::string_view source) {
  if (source.starts_with("(")) return oracleDescriptor(source, foldCase(source));
  // A user and a password may stand in front, and must not become part of a name.
  if (const std::size_t at = source.rfind('@'); at != source.npos) source.remove_prefix(at + 1);
  if (source.starts_with("//")) source.remove_prefix(2);
  const std::size_t slash = source.find('/');
  if (slash == source.npos) {
    const Endpoint endpoint = hostAndPort(source);
    return {endpoint, endpoint.port.empty() ? source : std::string_view()};
  }
  std::string_view service = source.substr(slash + 1);
  service = service.substr(0, service.find_first_of(":/"));  // a server mode or an instance may follow
  return {hostAndPort(source.substr(0, slash)), service};
}

Location locate(const ServerKind& kind, const ConnectionString& values) {
  const std::string_view source =
      values.get({"data source", "server", "address", "addr", "network address", "host", "location", "dbq"});
  Location location;
  if (kind.scheme == "oracle")
    location = oracleLocation(source);
  else if (kind.scheme == sqlServer().scheme)
    location.endpoint = sqlServerEndpoint(source);
  else
    location.endpoint = hostAndPort(source);
  if (const std::string_view port = values.get({"port"}); !port.empty()) location.endpoint.port = port;
  const std::string_view database = values.get({"initial catalog", "database", "service name"});
  if (!database.empty()) location.database = database;
  return location;
}

}  // namespace

DatabaseAddress parseDatabaseAddress(std::string_view connectionString, std::string_view connectionName,
                                     std::string_view dataStore) {
  const ConnectionString values(connectionString);
  const ServerKind& kind = kindOf(values, dataStore);
  const Location location = locate(kind, values);
  DatabaseAddress address{"connection://" + uriText(connectionName), maskPasswords(location.database),
                          std::string(kind.defaultSchema)};
  if (!location.endpoint.host.empty()) address.server = serverUri(kind, location.endpoint);
  return address;
}

DatabaseAddress unnamedDatabase() {
  DatabaseAddress address = parseDatabaseAddress("", "unknown", "");
  address.named = false;
  return address;
}

DatabaseAddress addressOf(const DatabaseAddress& connection, std::string_view server,
                          std::string_view database) {
  DatabaseAddress address = connection;
  if (!server.empty()) {
    address.server = serverUri(sqlServer(), sqlServerEndpoint(server));
    address.named = true;
  }
  if (!database.empty()) address.database = maskPasswords(database);
  return address;
}

}  // namespace tav
