#pragma once

#include "framework/details/details.h"
#include "framework/model/model.h"
#include "framework/std/log.h"

namespace tav {

/// Finds the sources of the queries that an importer has marked with `label::kUnresolvedQuery`, and takes the
/// marks off.
/// Tables and columns that they name are made in the package of their connection where it has none. A query
/// that hands on the rows of one table as they are gives way to that table. Warnings go to `log`, which may
/// be null; `details`, which may be null too, say of the table what they said of the query.
void resolveDatabaseQueries(TAVStoreModel& model, TAVLog* log, Details* details);

}  // namespace tav
