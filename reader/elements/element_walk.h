#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Fills the details of a run from the element of a database, once the model has what it takes of it: items
/// and settings of what it leaves out, relations for all IDs and bindings, and the expressions that are still
/// to be resolved. Of cubes nobody may look at an element afterwards: their memory is given back on the way.
void readDetails(ImportRun& run, const TAVDOMElement& database);

}  // namespace tav
