#pragma once

// The self-contained HTML report of a model and its lineage: it is opened in a browser and loads nothing from
// the network. What it looks like is made in page/; here a model is put into it.

#include <ostream>
#include <string_view>

#include "lineage/lineage_graph.h"

namespace tav {

/// Writes the page with the model in it. `program` is its maker's name and version, for the reader. Passwords
/// are masked. Whether the stream took everything is the caller's to check.
void writeReport(const LineageGraph& graph, std::string_view program, std::ostream& out);

/// What the page is given, without the page: one JSON document, in which no "<" stands.
void writeReportData(const LineageGraph& graph, std::string_view program, std::ostream& out);

/// The page without a model, and the one about several. Each has one line that is reportPlaceholder(), where
/// its data go.
std::string_view reportPage() noexcept;
std::string_view estatePage() noexcept;
std::string_view reportPlaceholder() noexcept;

}  // namespace tav
