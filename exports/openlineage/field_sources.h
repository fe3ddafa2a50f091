#pragma once

// What feeds the fields of datasets.

#include <vector>

#include "exports/openlineage/datasets.h"

namespace tav {

/// A resolved node of a dataset, and how it feeds another one.
struct FieldSource {
  NodeId node;
  EdgeKind kind;
};

/// The nodes of datasets that give a node its value or decide which count, in order, each once for each way
/// in which it does. What is no part of a dataset, as a named set, is gone through to what that comes from.
/// What changes all measures alike counts as a source of none.
std::vector<FieldSource> fieldSources(const LineageGraph& graph, const CatalogDatasets& datasets,
                                      NodeId node);

}  // namespace tav
