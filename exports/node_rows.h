#pragma once

// The nodes of a lineage graph as rows of a table, for exports that are tables.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

inline constexpr std::array<std::string_view, 15> kNodeColumns{
    "kind",       "name",     "qualified_name", "path",        "server", "database",    "schema", "data_type",
    "expression", "language", "aggregation",    "description", "hidden", "has_lineage", "reason"};
inline constexpr std::size_t kPathColumn = 3;
/// The texts of a node, in the order of kNodeColumns. What a node does not have is empty, passwords are
/// masked.
using NodeRow = std::array<std::string, kNodeColumns.size()>;

class NodeRows {
 public:
  /// The graph must live longer.
  explicit NodeRows(const LineageGraph& graph);

  [[nodiscard]] NodeRow row(NodeId id) const;

 private:
  [[nodiscard]] std::string_view hasLineage(NodeId id) const;
  [[nodiscard]] std::string reason(NodeId id) const;

  const LineageGraph& graph_;
  std::vector<bool> reached_;
};

}  // namespace tav
