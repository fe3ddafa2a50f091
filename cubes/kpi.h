#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Makes the KPI of a child of the Kpis element in the cube's folder of KPIs: a dimension with four measures,
/// each with a copy in the cube.
void importKpi(ImportRun& run, const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& folder);

}  // namespace tav
