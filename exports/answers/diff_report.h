#pragma once

#include <ostream>

#include "lineage/model_diff.h"

namespace tav {

/// For people: a line for each thing, what changed about it indented below. Safe for a terminal.
void writeDiffText(const ModelDiff& diff, std::ostream& out);

/// The same for a comment under a pull request.
void writeDiffMarkdown(const ModelDiff& diff, std::ostream& out);

/// One JSON document: `{"format":"xmla-diff/1","old":...,"new":...,"added":[...],"removed":[...],
/// "renamed":[...],"changed":[...]}`.
void writeDiffJson(const ModelDiff& diff, std::ostream& out);

}  // namespace tav
