#include "lineage/server_location.h"

#include <algorithm>
#include <array>
#include <utility>

#include "framework/std/connection_string.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kOneLake = "@onelake.dfs.fabric.microsoft.com";

struct Endpoint {
  std::string_view host;
  std::string_view port;
  std::string_view instance;
};

std::string serverUri(const ServerKind& kind, const Endpoint& endpoint) {
  std::string uri(kind.scheme);
  if (endpoint.host.empty()) return {};
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

/// `host:port`, also of an IPv6 address in brackets.
Endpoint hostAndPort(std::string_view source) {
  const std::size_t colon = source.rfind(':');
  if (colon == source.npos || !isNumber(source.substr(colon + 1))) return {source, {}, {}};
  return {source.substr(0, colon), source.substr(colon + 1), {}};
}

/// `host`, `host,port`, `host:port`, `host\instance`, `host\instance,port`, with or without a protocol in
/// front.
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
    if (comma == source.npos && slash == source.npos) endpoint = hostAndPort(endpoint.host);
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

/// A URL, or a host alone; a user and password in front of the host are left out.
struct Url {
  std::string_view scheme;     ///< empty without one
  std::string_view container;  ///< what stands before `@` in the URI of a store
  Endpoint endpoint;
  std::string_view path;  ///< without slashes around it
};

std::string_view withoutSlashes(std::string_view path) {
  while (path.starts_with("/")) path.remove_prefix(1);
  while (path.ends_with("/")) path.remove_suffix(1);
  return path;
}

Url urlOf(std::string_view source) {
  Url url;
  if (const std::size_t mark = source.find("://"); mark != source.npos) {
    url.scheme = source.substr(0, mark);
    source.remove_prefix(mark + 3);
  }
  std::string_view authority = source.substr(0, source.find_first_of("/?#"));
  url.path = withoutSlashes(source.substr(authority.size()));
  if (const std::size_t at = authority.rfind('@'); at != authority.npos) {
    url.container = authority.substr(0, at);
    authority.remove_prefix(at + 1);
  }
  url.endpoint = hostAndPort(authority);
  return url;
}

/// A URL without the folders `.` and `..`, as whoever reads it takes it.
std::string withoutDots(std::string_view source) {
  if (source.find("/.") == source.npos) return std::string(source);
  const std::size_t mark = source.find("://");
  const std::size_t path = std::min(source.find('/', mark == source.npos ? 0 : mark + 3), source.size());
  const std::size_t end = std::min(source.find_first_of("?#", path), source.size());
  std::string text(source.substr(0, path));
  for (std::size_t at = path; at < end;) {
    const std::size_t next = std::min(source.find('/', at + 1), end);
    const std::string_view folder = source.substr(at, next - at);
    if (folder == "/..")
      text.resize(std::max(std::min(text.rfind('/'), text.size()), path));
    else if (folder != "/.")
      text.append(folder);
    at = next;
  }
  return text.append(source.substr(end));
}

/// The host and port of `host,port` too.
Endpoint endpointOf(std::string_view source) {
  const std::size_t comma = source.find(',');
  if (comma != source.npos && isNumber(trimmed(source.substr(comma + 1))))
    return {trimmed(source.substr(0, comma)), trimmed(source.substr(comma + 1)), {}};
  return urlOf(source).endpoint;
}

std::string_view withoutEnd(std::string_view text, std::string_view end) {
  const bool same = text.size() > end.size() && foldCase(text.substr(text.size() - end.size())) == end;
  return same ? text.substr(0, text.size() - end.size()) : text;
}

/// Keeps the slashes of a path.
std::string pathText(std::string_view path) {
  std::string text;
  for (std::size_t at = 0; at <= path.size();) {
    const std::size_t end = std::min(path.find('/', at), path.size());
    text.append(at == 0 ? "" : "/").append(uriText(path.substr(at, end - at)));
    at = end + 1;
  }
  return text;
}

std::string snowflakeUri(const ServerKind& kind, std::string_view source) {
  const std::string_view account = withoutEnd(urlOf(source).endpoint.host, ".snowflakecomputing.com");
  return serverUri(kind, {withoutEnd(account, ".privatelink"), {}, {}});
}

/// `cluster.account.region.redshift.amazonaws.com`: catalogues know it by cluster and region.
std::string redshiftUri(const ServerKind& kind, std::string_view source) {
  const Endpoint endpoint = endpointOf(source);
  std::string_view host = withoutEnd(endpoint.host, ".redshift.amazonaws.com");
  host = withoutEnd(host, ".redshift-serverless.amazonaws.com");
  const std::size_t first = host.find('.');
  const std::size_t last = host.rfind('.');
  if (host.size() == endpoint.host.size() || first == host.npos || first == last)
    return serverUri(kind, endpoint);
  const std::string name = std::string(host.substr(0, first)).append(host.substr(last));
  return serverUri(kind, {name, endpoint.port, {}});
}

std::string kustoUri(const ServerKind& kind, std::string_view source) {
  std::string host(urlOf(source).endpoint.host);
  if (!host.empty() && host.find('.') == host.npos) host += ".kusto.windows.net";
  return serverUri(kind, {host, {}, {}});
}

/// `https://account.dfs.core.windows.net/container/path` and `abfss://container@...`. An account may be named
/// alone; all services of one are known by the same host.
ServerLocation storageLocation(const ServerKind& kind, std::string_view source) {
  if (kind.naming == TableNaming::lakehouse && source.find("://") == source.npos)  // a workspace
    return {std::string(kind.scheme).append("://").append(uriText(source)).append(kOneLake), {}};
  const std::string address = withoutDots(source);
  Url url = urlOf(address);
  std::string host(url.endpoint.host);
  if (host.empty()) return {};
  if (host.find('.') == host.npos) host += ".dfs.core.windows.net";
  if (const std::string_view account = withoutEnd(host, ".blob.core.windows.net");
      account.size() < host.size())
    host = std::string(account).append(".dfs.core.windows.net");
  if (url.container.empty() || url.container.find(':') != url.container.npos) {
    const std::size_t end = std::min(url.path.find('/'), url.path.size());
    url.container = url.path.substr(0, end);
    url.path = withoutSlashes(url.path.substr(end));
  }
  std::string server = std::string(kind.scheme).append("://").append(uriText(url.container));
  return {server.append(url.container.empty() ? "" : "@").append(uriText(host)), std::string(url.path)};
}

/// `C:\folder`, `/folder`, `file:///folder`, and `\\computer\share\folder` of another computer.
ServerLocation pathLocation(std::string_view source) {
  std::string path(source);
  for (char& c : path)
    if (c == '\\') c = '/';
  if (foldCase(path.substr(0, 5)) == "file:") path.erase(0, path.compare(5, 3, "///") == 0 ? 7 : 5);
  if (path.size() > 2 && path[0] == '/' && path[2] == ':') path.erase(0, 1);  // /C:/folder of a URI
  if (path.size() > 1 && path.back() == '/') path.pop_back();
  if (!path.starts_with("//")) return {"file", std::move(path)};
  const std::size_t end = std::min(path.find('/', 2), path.size());
  return {"file://" + uriText(std::string_view(path).substr(2, end - 2)), path.substr(end)};
}

ServerLocation urlLocation(const ServerKind& kind, std::string_view source) {
  const std::string address = withoutDots(source);
  const Url url = urlOf(address);
  if (url.endpoint.host.empty()) return {};
  std::string server(url.scheme.empty() ? kind.scheme : url.scheme);
  server.append("://").append(uriText(url.endpoint.host));
  if (!url.endpoint.port.empty()) server.append(":").append(uriText(url.endpoint.port));
  return {std::move(server), std::string(url.path)};
}

ServerLocation siteLocation(const ServerKind& kind, std::string_view source) {
  const Url url = urlOf(source);
  std::string server = serverUri(kind, url.endpoint);
  if (!server.empty() && !url.path.empty()) server.append("/").append(pathText(url.path));
  return {std::move(server), {}};
}

ServerLocation hadoopLocation(const ServerKind& kind, std::string_view source) {
  const Url url = urlOf(source);
  constexpr std::string_view kInterface = "webhdfs/v1";
  std::string_view path = url.path;
  if (path.starts_with(kInterface)) path.remove_prefix(kInterface.size());
  return {serverUri(kind, url.endpoint), std::string("/").append(withoutSlashes(path))};
}

std::string_view sourceOf(const ConnectionString& values) {
  return values.get({"data source", "server", "address", "addr", "network address", "host", "hostname",
                     "servernode", "location", "dbq", "dbcname", "dsn"});
}

ServerLocation locateAt(const ServerKind& kind, std::string_view source, std::string_view port,
                        std::string_view database) {
  const std::string own(database);
  switch (kind.form) {
    case AddressForm::sqlServer:
    case AddressForm::hostPort: {
      Endpoint endpoint =
          kind.form == AddressForm::sqlServer ? sqlServerEndpoint(source) : endpointOf(source);
      if (!port.empty()) endpoint.port = port;
      return {serverUri(kind, endpoint), own};
    }
    case AddressForm::oracle: {
      Location location = oracleLocation(source);
      if (!port.empty()) location.endpoint.port = port;
      return {serverUri(kind, location.endpoint), database.empty() ? std::string(location.database) : own};
    }
    case AddressForm::snowflake:
      return {snowflakeUri(kind, source), own};
    case AddressForm::redshift:
      return {redshiftUri(kind, port.empty() ? source : std::string(source).append(":").append(port)), own};
    case AddressForm::kusto:
      return {kustoUri(kind, source), own};
    case AddressForm::cosmos: {
      const std::string server = serverUri(kind, {urlOf(source).endpoint.host, {}, {}});
      return {server.empty() || own.empty() ? server : server + "/dbs/" + uriText(own), {}};
    }
    case AddressForm::analysis:
      if (const std::size_t mark = source.find("://"); mark != source.npos)
        return {std::string(source.substr(0, mark + 3)) + pathText(source.substr(mark + 3)), own};
      return {serverUri(kind, {source, {}, {}}), own};
    case AddressForm::url:
      return urlLocation(kind, source);
    case AddressForm::site:
      return siteLocation(kind, source);
    case AddressForm::storage: {
      ServerLocation location = storageLocation(kind, source);
      if (!own.empty()) location.database.append(location.database.empty() ? "" : "/").append(own);
      return location;
    }
    case AddressForm::path:
      return pathLocation(source);
    case AddressForm::hadoop:
      return hadoopLocation(kind, source);
    default:
      return {};
  }
}

}  // namespace

ServerKind refinedKind(const ServerKind& kind, std::string_view connectionString) {
  using Host = std::pair<std::string_view, std::string_view>;
  constexpr std::array kHosts{Host{".sql.azuresynapse.net", "synapse"},
                              Host{".datawarehouse.fabric.microsoft.com", "fabric"},
                              Host{".datawarehouse.pbidedicated.windows.net", "fabric"}};
  if (kind.name != sqlServerKind().name) return kind;
  const ConnectionString values(connectionString);
  const Endpoint endpoint = sqlServerEndpoint(sourceOf(values));
  for (const auto& [end, name] : kHosts)
    if (withoutEnd(endpoint.host, end).size() < endpoint.host.size()) return *findServerKind(name);
  return kind;
}

ServerLocation locateServer(const ServerKind& kind, std::string_view connectionString) {
  if (kind.form == AddressForm::hidden) return {};
  const ConnectionString values(connectionString);
  const std::string_view database = values.get({"initial catalog", "database", "service name", "catalog"});
  if (kind.form == AddressForm::none)
    return {kind.name.empty() ? std::string() : std::string(kind.scheme), std::string(database)};
  if (kind.form == AddressForm::athena) {
    const std::string_view region = values.get({"awsregion", "region"});
    if (region.empty()) return {{}, std::string(database)};
    return {"awsathena://athena." + uriText(region) + ".amazonaws.com", std::string(database)};
  }
  ServerLocation location = locateAt(kind, sourceOf(values), values.get({"port"}), database);
  // Of a service that the definition names without an address there is only one.
  if (location.server.empty() && !findServerKind(kind.name)) location.server = uriText(kind.scheme);
  return location;
}

std::string sqlServerUri(std::string_view source) {
  return serverUri(sqlServerKind(), sqlServerEndpoint(source));
}

std::string serverName(std::string_view source) {
  if (source.find("://") != source.npos) return std::string(source);
  const Endpoint endpoint = sqlServerEndpoint(source);
  std::string name = uriText(endpoint.host);
  if (!endpoint.port.empty()) name.append(":").append(uriText(endpoint.port));
  if (!endpoint.instance.empty()) name.append("/").append(uriText(endpoint.instance));
  return name;
}

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

}  // namespace tav
