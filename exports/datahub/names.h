#pragma once

// What DataHub calls platforms, data sets, fields and containers.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exports/formats.h"
#include "exports/openlineage/datasets.h"

namespace tav {

/// What kind of server a data set is on.
struct DatahubPlatform {
  std::string name;
  std::string title;            ///< empty for one that DataHub knows by itself
  std::string_view delimiter;   ///< between the parts of a name
  bool inName = false;          ///< whether names begin with the server, which nothing else tells
  bool databaseInName = false;  ///< whether they begin with the database even where the server implies it
};

/// The platform of what a namespace, the URI of a server, holds.
DatahubPlatform datahubPlatform(std::string_view space);

/// A name as a part of a URN: what ends parts is escaped, and no two names become one.
std::string urnText(std::string_view name);

/// The names of all data sets of a graph. Both, and the options, must live longer.
class DatahubNames {
 public:
  DatahubNames(const LineageGraph& graph, const CatalogDatasets& datasets, const ExportOptions& options);

  [[nodiscard]] const std::string& dataset(DatasetId id) const noexcept { return urns_[id]; }
  [[nodiscard]] std::string field(DatasetId id, NodeId field) const;
  /// The container of the whole model, or with its node that of a cube.
  [[nodiscard]] const std::string& container(NodeId cube = kNoNode) const;
  [[nodiscard]] const DatahubPlatform& platform(std::string_view space) const;
  /// The instance of the platform that a server is; empty when the user names none.
  [[nodiscard]] std::string_view instance(std::string_view space) const;

 private:
  void nameContainers();
  void nameDataset(const CatalogDataset& dataset);
  [[nodiscard]] std::string nameOf(const CatalogDataset& dataset) const;

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  const ExportOptions& options_;
  std::unordered_map<std::string_view, DatahubPlatform> platforms_;   // by namespace
  std::unordered_map<std::string_view, std::string_view> instances_;  // by server
  std::unordered_map<std::string, UniqueNames> names_;                // by platform
  std::vector<std::string> urns_;
  std::unordered_map<NodeId, std::string> containers_;  // by cube; of kNoNode that of the model
};

std::string platformUrn(const DatahubPlatform& platform);
std::string instanceUrn(const DatahubPlatform& platform, std::string_view instance);

}  // namespace tav
