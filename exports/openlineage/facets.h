#pragma once

// Parts of events that tell of a dataset or of the job that makes it.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exports/openlineage/datasets.h"
#include "framework/std/json_writer.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// What a catalogue may show of the kind of a dataset.
struct DatasetType {
  std::string_view type;
  std::string_view subtype;
};

/// Who makes the events: a URI of this program with its version.
std::string_view lineageProducer() noexcept;

/// Writes facets, of which each names its producer and its schema.
class FacetWriter {
 public:
  /// All of these must live longer.
  FacetWriter(const LineageGraph& graph, const CatalogDatasets& datasets, JsonWriter& json);

  /// The members "namespace" and "name" of a dataset.
  void writeReference(DatasetId id);
  /// The member "facets" of a dataset: type, origin, description, columns and, where it has one, their
  /// lineage.
  void writeDatasetFacets(DatasetId id);
  /// The member "facets" of the job that makes a dataset: its kind and its text.
  void writeJobFacets(DatasetId id);

 private:
  struct Schema;
  struct Source {
    NodeId field;
    EdgeKind kind;
  };

  void open(const Schema& schema);
  void writeType(const DatasetType& type);
  void writeOrigin(const CatalogDataset& dataset);
  void writeDescription(NodeId node);
  void writeColumns(const CatalogDataset& dataset);
  void writeColumnLineage(const CatalogDataset& dataset);
  void writeInputFields(NodeId field, const std::vector<Source>& sources);
  void writeInputField(const Source& source, NodeId to, std::string_view expression);
  void writeConditions(const CatalogDataset& dataset);
  void writeQuery(NodeId query);
  void writeExpressions(const CatalogDataset& dataset);
  [[nodiscard]] std::vector<Source> sourcesOf(NodeId node) const;

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  JsonWriter& json_;
  std::vector<std::string> references_;                       // by dataset
  std::unordered_map<std::string, std::string> connections_;  // names by server and database
};

}  // namespace tav
