#pragma once

// How far the lineage of a model reaches: which attributes and measures trace back to a database column, and
// why the others do not. Whether one does is decided by LineageGraph::tracedBack.

#include <array>
#include <string>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Things of one kind, and how many of them trace back to a database column.
struct CoverageCount {
  std::size_t count = 0;
  std::size_t reached = 0;
  std::size_t rowCounts = 0;  ///< of all, the measures that count rows

  void add(const CoverageCount& more) noexcept;
};

/// How many of both trace back in percent, rounded down: 100 means all of them, or that there is nothing.
std::size_t percentOf(const CoverageCount& attributes, const CoverageCount& measures) noexcept;

struct CoverageGap {
  NodeId node;
  std::string reason;
};

struct CubeCoverage {
  NodeId cube;  ///< kNoNode for what belongs to no cube: the attributes of the database's dimensions
  CoverageCount attributes;
  CoverageCount measures;  ///< all that the cube lists: of measure groups, calculated, values of KPIs
  /// In the order of the model. What several cubes show, or one under several names, is in one list only:
  /// that of the cube which it belongs to.
  std::vector<CoverageGap> gaps;
};

/// A name in the expression of a node that leads to no attribute or measure.
struct CoverageName {
  NodeId node;
  OpenNameText name;
};

struct Coverage {
  std::vector<CubeCoverage> cubes;  ///< the dimensions of the database first
  // Of all together, each counted once however many cubes show it.
  CoverageCount attributes;
  CoverageCount measures;
  std::vector<CoverageName> names;
  std::array<std::size_t, kOpenNameStateCount> nameCounts{};  ///< by OpenNameState

  /// The total in percent.
  [[nodiscard]] std::size_t percent() const noexcept { return percentOf(attributes, measures); }
  /// How many names have that state.
  [[nodiscard]] std::size_t namesThat(OpenNameState state) const noexcept {
    return nameCounts[static_cast<std::size_t>(state)];
  }
};

Coverage measureCoverage(const LineageGraph& graph);

}  // namespace tav
