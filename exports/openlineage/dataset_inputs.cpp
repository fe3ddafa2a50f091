#include "exports/openlineage/dataset_inputs.h"

namespace tav {

DatasetInputs::DatasetInputs(const LineageGraph& graph, const CatalogDatasets& datasets)
    : graph_(graph), datasets_(datasets), foundFor_(datasets.all().size(), kNoDataset) {}

std::vector<DatasetId> DatasetInputs::of(DatasetId id) {
  std::vector<DatasetId> inputs;
  const NodeId node = datasets_.get(id).node;
  addInputs(id, node, inputs);
  for (const NodeId part : graph_.partsOf(node))
    if (datasets_.datasetOf(part) == id) addInputs(id, part, inputs);
  return inputs;
}

void DatasetInputs::addInputs(DatasetId id, NodeId node, std::vector<DatasetId>& inputs) {
  for (const FieldSource& source : fieldSources(graph_, datasets_, node)) addInput(id, node, source, inputs);
  for (const LineageEdge& edge : graph_.into(node))
    if (edge.kind == EdgeKind::member) addInput(id, node, {datasets_.resolve(edge.from), edge.kind}, inputs);
}

void DatasetInputs::addInput(DatasetId id, NodeId node, const FieldSource& source,
                             std::vector<DatasetId>& inputs) {
  const DatasetId input = datasets_.datasetOf(source.node);
  if (input == kNoDataset) return;
  const NodeKind kind = graph_.node(source.node).kind;
  const bool isOwnPart = input == id && (source.kind == EdgeKind::member || node == datasets_.get(id).node ||
                                         kind == NodeKind::condition || isClassifierKind(kind));
  if (isOwnPart || foundFor_[input] == id) return;
  foundFor_[input] = id;
  inputs.push_back(input);
}

std::vector<FieldSource> feedingFields(const LineageGraph& graph, const CatalogDatasets& datasets,
                                       NodeId node) {
  std::vector<FieldSource> sources = fieldSources(graph, datasets, node);
  std::erase_if(sources, [&](const FieldSource& source) {
    const NodeKind kind = graph.node(source.node).kind;
    return isClassifierKind(kind) || kind == NodeKind::condition;
  });
  return sources;
}

}  // namespace tav
