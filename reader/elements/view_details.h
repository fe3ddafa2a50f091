#pragma once

#include "reader/elements/references.h"

namespace tav {

/// What the schemas of the data source views say beyond tables, columns and queries: keys, relationships,
/// and what else is noted of tables and columns.
void readViewDetails(ImportRun& run, const TAVDOMElement& database, IdReferences& references);

}  // namespace tav
