#pragma once

// The rows of one model in a database of models.

#include <cstdint>
#include <span>
#include <string>

#include "exports/sqlite_database.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// What a model is in the database, beside what it holds.
struct SqliteModel {
  std::string source;        ///< see canonicalSource()
  std::int64_t version = 0;  ///< that it was made of; 0 when the database does not know
  /// Whether models of the same source under other names give way too.
  bool alone = false;
};

/// What a database calls an input: the path of a file or folder without links and from the root, so that it
/// is the same from wherever it is named; anything else as it is written. Passwords are masked.
std::string canonicalSource(const std::string& input);

/// Puts the model into the database instead of what is there of the same source.
void loadModel(SqliteDatabase& database, const LineageGraph& graph, const SqliteModel& model,
               std::span<const std::string> importWarnings);

/// Takes all models of a source away.
void removeModels(SqliteDatabase& database, const std::string& source);

}  // namespace tav
