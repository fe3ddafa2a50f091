#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Makes a store connection for each data source of the database.
void importDataSources(ImportRun& run, const TAVDOMElement& database);

/// Makes a package of tables and columns in the folder for each data source view, and enters the columns for
/// whatever they feed. Their tables are listed by the connections.
void importDataSourceViews(ImportRun& run, const TAVDOMElement& database, TAVDesignPackage& folder);

}  // namespace tav
