#pragma once

// How far the lineage of a model reaches: which attributes and measures trace back to a database column, and
// why the others do not. Whether one does is decided by LineageGraph::tracedBack.

#include <string>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Things of one kind, and how many of them trace back to a database column.
struct CoverageCount {
  std::size_t count = 0;
  std::size_t reached = 0;         ///< over every edge of the graph
  std::size_t reachedByModel = 0;  ///< over the model's own edges
  std::size_t rowCounts = 0;       ///< of all, the measures that count rows
};

struct CoverageGap {
  NodeId node;
  std::string reason;
};

struct CubeCoverage {
  NodeId cube;  ///< kNoNode for what belongs to no cube: the attributes of the database's dimensions
  CoverageCount attributes;
  CoverageCount measures;         ///< all that the cube lists: of measure groups, calculated, values of KPIs
  std::vector<CoverageGap> gaps;  ///< in the order of the model
};

struct Coverage {
  std::vector<CubeCoverage> cubes;  ///< the dimensions of the database first
  std::size_t unresolved = 0;       ///< names in expressions that neither the model nor the graph finds
  std::size_t foundByGraph = 0;     ///< names that only the graph finds

  /// The total in percent, rounded down: 100 means that all trace back, or that there is nothing.
  [[nodiscard]] std::size_t percent() const noexcept;
  [[nodiscard]] std::size_t percentByModel() const noexcept;
};

Coverage measureCoverage(const LineageGraph& graph);

/// Why a node does not trace back to a database column, in half a sentence.
std::string gapReason(const LineageGraph& graph, NodeId id);

}  // namespace tav
