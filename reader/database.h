#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Fills the run's model from the element that defines a database. Here stands the order of all steps.
void importDatabase(ImportRun& run, const TAVDOMElement& database);

}  // namespace tav
