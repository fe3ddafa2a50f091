#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Makes a measure of `calculatedMeasures`, and its copy in the cube, for each calculated measure that an
/// MdxScript element creates.
void importMdxScript(ImportRun& run, const TAVDOMElement& element, TAVDimension& calculatedMeasures,
                     TAVCube& cube);

}  // namespace tav
