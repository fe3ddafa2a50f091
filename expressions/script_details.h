#pragma once

#include <vector>

#include "expressions/model_names.h"
#include "reader/run/import_run.h"

namespace tav {

/// A cube with the element that it was made from, which is read once more when all cubes are there.
struct CubeElement {
  TAVCube* cube;
  const TAVDOMElement* element;
};

/// Writes what the MDX scripts of all cubes hold into the details, and what all expressions name: those of
/// the scripts, of the model's measures, and of the run's list. Called when the model is complete, and only
/// when details are wanted.
void importExpressionDetails(ImportRun& run, const std::vector<CubeElement>& cubes, ModelNames& names);

}  // namespace tav
