#pragma once

#include <ostream>

#include "exports/answers/shown_text.h"
#include "lineage/model_diff.h"

namespace tav {

/// For people: a line for each thing, what changed about it indented below, expressions line by line. Safe
/// for a terminal.
void writeDiffText(const ModelDiff& diff, std::ostream& out, const TextStyle& style = {});

/// The same for a comment under a pull request, long lists folded.
void writeDiffMarkdown(const ModelDiff& diff, std::ostream& out);

/// One JSON document, the groups as lists: `{"format":"xmla-diff/2","old":...,"new":...,"broken":[...],
/// "lostLineage":[...],"changed":[...],"added":[...],"removed":[...],"renamed":[...],"moved":[...],
/// "reordered":[...],"affected":{"count":...,"first":[...]},"notes":[...]}`.
void writeDiffJson(const ModelDiff& diff, std::ostream& out);

}  // namespace tav
