#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Gives the cube a dimension of the database under the name that the cube has for it: an association, and an
/// alias in the cube's package that the cube's schema lists. A dimension that the database does not have is
/// passed over.
void importCubeDimension(ImportRun& run, const TAVDOMElement& element, TAVCube& cube,
                         TAVDesignPackage& package, TAVOlapSchema& schema);

}  // namespace tav
