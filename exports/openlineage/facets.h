#pragma once

// Parts of events that tell of a dataset or of the job that makes it.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exports/openlineage/field_sources.h"
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
  void open(const Schema& schema);
  void writeType(const DatasetType& type);
  void writeOrigin(const CatalogDataset& dataset);
  void writeDescription(NodeId node);
  void writeColumns(DatasetId id);
  void writeColumnLineage(DatasetId id);
  void writeInputFields(const std::string& name, NodeId field, const std::vector<FieldSource>& sources);
  void writeInputField(const FieldSource& source, NodeId to, std::string_view expression);
  void writeConditions(const CatalogDataset& dataset);
  void writeOwnFacet(DatasetId id);
  void writeQuery(NodeId query);
  void writeExpressions(DatasetId id);

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  JsonWriter& json_;
  std::vector<std::string> references_;                       // by dataset
  std::unordered_map<std::string, std::string> connections_;  // names by server and database
};

}  // namespace tav
