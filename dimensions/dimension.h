#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// A dimension of the database, listed in `schema` but not placed yet; null for another element.
Owned<TAVDimension> importDimension(ImportRun& run, const TAVDOMElement& element, TAVOlapSchema& schema);

}  // namespace tav
