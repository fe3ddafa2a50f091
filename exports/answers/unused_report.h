#pragma once

#include <ostream>
#include <span>

#include "lineage/unused.h"

namespace tav {

/// For people: what nothing uses, below it what is only shown and by what, kind by kind. Safe for a terminal.
void writeUnusedText(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out);

/// The same for a page or a comment under a pull request.
void writeUnusedMarkdown(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out);

/// One JSON document: `{"format":"xmla-unused/1","groups":[{"name":...,"nodes":[...]}]}`.
void writeUnusedJson(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out);

/// A row for each, as RFC 4180 has them.
void writeUnusedCsv(const LineageGraph& graph, std::span<const UnusedGroup> groups, std::ostream& out);

}  // namespace tav
