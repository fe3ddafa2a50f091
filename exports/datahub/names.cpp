#include "exports/datahub/names.h"

#include <algorithm>
#include <array>

#include "exports/openlineage/run_id.h"

namespace tav {
namespace {

/// A platform that other producers write too, under names without the server.
struct KnownPlatform {
  std::string_view scheme;
  std::string_view name;
  bool databaseInName = false;
};

constexpr std::array kDatabases{KnownPlatform{"mssql", "mssql", true},
                                KnownPlatform{"sqlserver", "mssql", true},
                                KnownPlatform{"oracle", "oracle"},
                                KnownPlatform{"postgres", "postgres"},
                                KnownPlatform{"mysql", "mysql"},
                                KnownPlatform{"teradata", "teradata"},
                                KnownPlatform{"snowflake", "snowflake"},
                                KnownPlatform{"bigquery", "bigquery"},
                                KnownPlatform{"unitycatalog", "databricks"},
                                KnownPlatform{"redshift", "redshift"},
                                KnownPlatform{"saphana", "hana"},
                                KnownPlatform{"db2", "db2"}};

/// Platforms that are known, but not by which names: these begin with the server.
constexpr std::array kStores{KnownPlatform{"abfss", "abs"}, KnownPlatform{"wasbs", "abs"},
                             KnownPlatform{"s3", "s3"}};

constexpr std::string_view kAnalysisServices = "ssas";
constexpr std::string_view kEscapes = "0123456789ABCDEF";

template <std::size_t N>
const KnownPlatform* find(const std::array<KnownPlatform, N>& rows, std::string_view scheme) {
  const auto* const row =
      std::find_if(rows.begin(), rows.end(), [&](const KnownPlatform& one) { return one.scheme == scheme; });
  return row == rows.end() ? nullptr : row;
}

/// The namespace without its scheme; empty where that is all of it.
std::string_view behindScheme(std::string_view space) {
  const std::size_t colon = space.find(':');
  if (colon == space.npos) return {};
  space.remove_prefix(colon + 1);
  return space.substr(std::min(space.find_first_not_of('/'), space.size()));
}

/// Whether an escape begins here, or what would be read as one.
bool isEscape(std::string_view text) {
  constexpr std::array<std::string_view, 5> kRead{"%25", "%28", "%29", "%2C", "%2c"};
  return std::any_of(kRead.begin(), kRead.end(),
                     [&](std::string_view escape) { return text.starts_with(escape); });
}

std::string containerUrn(std::initializer_list<std::string_view> parts) {
  NamedUuid uuid;
  for (const std::string_view part : parts) {
    uuid.add(std::to_string(part.size()) + ":");
    uuid.add(part);
  }
  std::string text = uuid.finish();
  std::erase(text, '-');
  return "urn:li:container:" + text;
}

}  // namespace

DatahubPlatform datahubPlatform(std::string_view space) {
  const std::string_view scheme = space.substr(0, space.find(':'));
  if (const KnownPlatform* row = find(kDatabases, scheme))
    return {std::string(row->name), "", ".", false, row->databaseInName};
  if (const KnownPlatform* row = find(kStores, scheme)) return {std::string(row->name), "", "/", true};
  if (scheme == kAnalysisServices) return {std::string(scheme), "Analysis Services", "."};
  return {std::string(scheme), std::string(scheme), "/", true};
}

std::string urnText(std::string_view name) {
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool escaped = c == ',' || c == '(' || c == ')' || (c == '%' && isEscape(name.substr(i)));
    if (!escaped) {
      text += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    text.append({'%', kEscapes[byte >> 4U], kEscapes[byte & 15U]});
  }
  return text;
}

std::string platformUrn(const DatahubPlatform& platform) {
  return "urn:li:dataPlatform:" + urnText(platform.name);
}

std::string instanceUrn(const DatahubPlatform& platform, std::string_view instance) {
  return "urn:li:dataPlatformInstance:(" + platformUrn(platform) + "," + urnText(instance) + ")";
}

DatahubNames::DatahubNames(const LineageGraph& graph, const CatalogDatasets& datasets,
                           const ExportOptions& options)
    : graph_(graph), datasets_(datasets), options_(options) {
  for (const auto& [server, instance] : options.datahub.instances) instances_.try_emplace(server, instance);
  platforms_.try_emplace(options.server, datahubPlatform(options.server));
  for (const CatalogDataset& dataset : datasets.all())
    platforms_.try_emplace(dataset.space, datahubPlatform(dataset.space));
  nameContainers();
  urns_.reserve(datasets.all().size());
  for (const CatalogDataset& dataset : datasets.all()) nameDataset(dataset);
}

/// Servers are told apart by their instances; where there are none, a name that is taken gets a number.
void DatahubNames::nameDataset(const CatalogDataset& dataset) {
  const DatahubPlatform& platform = this->platform(dataset.space);
  const std::string name = names_[platform.name].take(nameOf(dataset));
  urns_.push_back("urn:li:dataset:(" + platformUrn(platform) + "," + urnText(name) + "," +
                  options_.datahub.environment + ")");
}

std::string DatahubNames::nameOf(const CatalogDataset& dataset) const {
  const DatahubPlatform& platform = this->platform(dataset.space);
  std::string name = dataset.name;
  const DatabaseAddress* address = graph_.database(dataset.node);
  if (address && platform.databaseInName && address->naming == TableNaming::schemaTable &&
      !address->database.empty())
    name = address->database + "." + name;
  const std::string_view server = behindScheme(dataset.space);
  if (platform.inName && !server.empty())
    name = std::string(server).append(server.ends_with('/') ? "" : "/").append(name);
  const std::string_view own = instance(dataset.space);
  return own.empty() ? name : std::string(own).append(".").append(name);
}

std::string DatahubNames::field(DatasetId id, NodeId field) const {
  return "urn:li:schemaField:(" + urns_[id] + "," + urnText(datasets_.fieldName(id, field)) + ")";
}

void DatahubNames::nameContainers() {
  const std::string model = graph_.modelName();
  const std::string& environment = options_.datahub.environment;
  containers_.emplace(kNoNode, containerUrn({options_.server, environment, model}));
  UniqueNames names;
  for (NodeId id = 0; id < graph_.nodes().size(); ++id)
    if (graph_.node(id).kind == NodeKind::cube)
      containers_.emplace(id,
                          containerUrn({options_.server, environment, model, names.take(graph_.name(id))}));
}

const std::string& DatahubNames::container(NodeId cube) const {
  return containers_.find(cube)->second;
}

const DatahubPlatform& DatahubNames::platform(std::string_view space) const {
  return platforms_.find(space)->second;
}

std::string_view DatahubNames::instance(std::string_view space) const {
  const auto found = instances_.find(space);
  return found == instances_.end() ? std::string_view() : found->second;
}

}  // namespace tav
