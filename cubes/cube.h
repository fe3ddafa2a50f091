#pragma once

#include "cubes/measure_groups.h"
#include "reader/run/import_run.h"

namespace tav {

/// Makes a cube with a schema and a package of its own in the folder of cubes; null for another element.
/// Linked measure groups whose cube is not there yet stay for importLinkedMeasureGroups.
TAVCube* importCube(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                    TAVDesignPackage& cubesFolder);

}  // namespace tav
