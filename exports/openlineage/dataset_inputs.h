#pragma once

// Which datasets feed another one.

#include <vector>

#include "exports/openlineage/field_sources.h"

namespace tav {

class DatasetInputs {
 public:
  /// Both must live longer.
  DatasetInputs(const LineageGraph& graph, const CatalogDatasets& datasets);

  /// The datasets that feed one, each once, in order; itself when one of its fields feeds another.
  std::vector<DatasetId> of(DatasetId id);

 private:
  void addInputs(DatasetId id, NodeId node, std::vector<DatasetId>& inputs);
  void addInput(DatasetId id, NodeId node, const FieldSource& source, std::vector<DatasetId>& inputs);

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  std::vector<DatasetId> foundFor_;  // by dataset: for which one it was last found to be an input
};

/// The fields of datasets that feed a field, each once for each way in which it does. Conditions and whole
/// datasets are none.
std::vector<FieldSource> feedingFields(const LineageGraph& graph, const CatalogDatasets& datasets,
                                       NodeId node);

}  // namespace tav
