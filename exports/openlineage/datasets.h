#pragma once

// What a lineage graph looks like to a catalogue of datasets: which nodes are datasets and which are their
// fields, and how both are called.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// The place of a dataset in CatalogDatasets.
using DatasetId = std::uint32_t;
inline constexpr DatasetId kNoDataset = 0xFFFFFFFF;

struct CatalogDataset {
  /// The node that the dataset is; where only its columns are known, the named query that reads them.
  NodeId node;
  std::string space;  ///< the namespace
  std::string name;   ///< unique in its namespace, never empty
  /// In order; conditions are none. Those of a perspective are the fields of others that it shows.
  std::vector<NodeId> fields;
  /// Whether the model makes it, by a job. Tables of databases are there already.
  bool made = false;
};

/// Gives each name once: one that is taken gets a number behind it.
class UniqueNames {
 public:
  std::string take(std::string name);

 private:
  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, std::size_t> last_;  // the number that a name got last
};

/// The datasets of a graph, which must live longer. They stand by kind, tables of databases first and
/// perspectives last, so that most come behind what feeds them; those of a kind in the order of the model.
///
/// A view table that has every column from one table of a database, under whatever names, is no dataset of
/// its own: that table stands for it.
class CatalogDatasets {
 public:
  /// `server` is the namespace of what the model makes.
  CatalogDatasets(const LineageGraph& graph, std::string_view server);

  [[nodiscard]] const std::vector<CatalogDataset>& all() const noexcept { return datasets_; }
  [[nodiscard]] const CatalogDataset& get(DatasetId id) const noexcept { return datasets_[id]; }

  /// The node that stands for `id`: for a view table that is no dataset, and for its columns, those of the
  /// database; otherwise `id` itself.
  [[nodiscard]] NodeId resolve(NodeId id) const noexcept {
    return standsFor_[id] == kNoNode ? id : standsFor_[id];
  }
  /// The dataset that a resolved node is, or is a part of.
  [[nodiscard]] DatasetId datasetOf(NodeId id) const noexcept { return datasetOf_[id]; }
  /// What a field of a dataset is called: its name, with a number where another one of that dataset has the
  /// same. Never empty.
  [[nodiscard]] std::string fieldName(DatasetId dataset, NodeId field) const;
  /// The node that has type and description of a node: itself, or for a table or column of a database the one
  /// that a view has for it.
  [[nodiscard]] NodeId describing(NodeId id) const noexcept;

 private:
  void findStandIns();
  void findDescriptions();
  void addDatasets();
  void addDataset(NodeId node);
  void addUnknownTables();
  void addShownFields(CatalogDataset& perspective) const;
  void nameFields(DatasetId id);
  [[nodiscard]] NodeId columnBehind(NodeId viewColumn) const;
  [[nodiscard]] NodeId tableBehind(NodeId viewTable) const;
  [[nodiscard]] bool isDataset(NodeId id) const;
  [[nodiscard]] std::string nameInModel(NodeId id) const;
  [[nodiscard]] std::string nameInDatabase(NodeId table) const;

  const LineageGraph& graph_;
  std::string server_;
  std::vector<CatalogDataset> datasets_;
  std::vector<NodeId> standsFor_;    // by node; kNoNode for itself
  std::vector<NodeId> describedBy_;  // by node of a database; kNoNode for nothing
  std::vector<DatasetId> datasetOf_;
  /// Of fields that are not called like their node, by dataset and node.
  std::unordered_map<std::uint64_t, std::string> otherNames_;
  std::unordered_map<std::string, UniqueNames> names_;  // of datasets, by namespace
};

}  // namespace tav
