#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Lets measures take over from their sources what only those know: once all cubes are there.
void resolveMeasures(ImportRun& run, const TAVDesignPackage& cubesFolder);

}  // namespace tav
