#pragma once

#include "cubes/measure_groups.h"
#include "reader/run/import_run.h"

namespace tav {

/// Makes the alias of a measure group of another cube in this cube's folder, and the cube's measures that it
/// lists. Nothing is made while the other cube is not there, nor a second time.
void importLinkedMeasureGroup(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                              TAVCube& cube, TAVDesignPackage& folder);

/// Makes the linked groups of a Cube element that could not be made before all cubes were there.
void importLinkedMeasureGroups(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                               TAVCube& cube);

}  // namespace tav
