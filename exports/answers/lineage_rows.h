#pragma once

// What trace and impact print for tools that take lines: each node that a walk reaches, once.

#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "exports/answers/lineage_text.h"

namespace tav {

/// A node that a walk reaches.
struct LineageRow {
  JoinedId node;
  std::uint32_t depth;      ///< edges from the start, along the shortest way
  const LineageEdge* edge;  ///< the last edge of that way; null for a part of the start
  std::uint32_t edgeModel;  ///< the model that the edge is of
  std::string path;         ///< as LineageGraph::path() gives it
};

/// The nodes that the walk reaches, without the starts, by kind in the order of NodeKind, then by the names
/// of models, and then by path. Of all kinds where `kinds` is empty, otherwise only of those.
std::vector<LineageRow> lineageRows(const JoinedGraph& graph, const LineageQuestion& question,
                                    std::span<const NodeKind> kinds);

/// A name on each line by which the node is found again (see JoinedNames). Safe for a terminal.
void writeLineageList(const JoinedGraph& graph, const LineageQuestion& question,
                      std::span<const NodeKind> kinds, std::ostream& out);

/// A row for each, as RFC 4180 has them. Where models are named, the first column names them; it is empty for
/// what databases hold.
void writeLineageCsv(const JoinedGraph& graph, const LineageQuestion& question,
                     std::span<const NodeKind> kinds, std::ostream& out);

/// A table for a page or a comment under a pull request.
void writeLineageMarkdown(const JoinedGraph& graph, const LineageQuestion& question,
                          std::span<const NodeKind> kinds, std::ostream& out);

}  // namespace tav
