#pragma once

#include "cubes/measure_groups.h"
#include "reader/run/import_run.h"

namespace tav {

/// Makes a measure group of the cube in its folder, with its measures, their copies in the cube, and the
/// columns of the view `viewId` that feed them. Another element is passed over.
void importMeasureGroup(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element, TAVCube& cube,
                        std::string_view viewId, TAVDesignPackage& folder);

}  // namespace tav
