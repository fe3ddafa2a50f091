#pragma once

#include <ostream>
#include <span>

#include "exports/answers/shown_text.h"
#include "lineage/joined_graph.h"
#include "lineage/unused.h"

namespace tav {

// Of several models, what one of them uses of a database is used in all, and models in which nothing is
// unused are left out where people read.

/// For people: what nothing uses, below it what is only shown and by what, kind by kind. Safe for a terminal.
void writeUnusedText(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out,
                     const TextStyle& style = {});

/// The same for a page or a comment under a pull request.
void writeUnusedMarkdown(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out);

/// One JSON document: `{"format":"xmla-unused/1","groups":[{"name":...,"nodes":[...]}]}`. Where models
/// are named it is `{"format":"xmla-unused-models/1","models":[{"model":...,"groups":[...]}]}`.
void writeUnusedJson(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out);

/// A row for each, as RFC 4180 has them; where models are named, behind the name of its model.
void writeUnusedCsv(const JoinedModels& graph, std::span<const UnusedGroup> groups, std::ostream& out);

}  // namespace tav
