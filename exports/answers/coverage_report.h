#pragma once

#include <ostream>

#include "exports/answers/shown_text.h"
#include "lineage/coverage.h"

namespace tav {

/// For people: a table of cubes, below it what leads to no column and why, grouped by cube.
void writeCoverageText(const LineageGraph& graph, const Coverage& coverage, std::ostream& out,
                       const TextStyle& style = {});

/// One JSON document: `{"format":"xmla-coverage/1","percent":...,"cubes":[...]}`, everything that the text
/// tells.
void writeCoverageJson(const LineageGraph& graph, const Coverage& coverage, std::ostream& out);

}  // namespace tav
