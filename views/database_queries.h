#pragma once

#include "framework/model/model.h"
#include "framework/std/log.h"

namespace tav {

/// The native type of a table that an importer marks as a query which the database runs, in
/// `TAVTable::query`, and whose sources are to be found.
inline constexpr std::string_view kUnresolvedQuery = "DatabaseQuery";

/// Finds the sources of the marked queries in a model that an importer has written, and takes the marks off.
/// Tables and columns that they name are made in the package of their connection where it has none. A query
/// that hands on the rows of one table as they are gives way to that table. Warnings go to `log`, which may
/// be null.
void resolveDatabaseQueries(TAVStoreModel& model, TAVLog* log);

}  // namespace tav
