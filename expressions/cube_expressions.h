#pragma once

#include "expressions/model_names.h"
#include "framework/std/log.h"

namespace tav {

/// Resolves the expressions of all measures in a cube's folders: what they name becomes their sources, and
/// each name that means nothing one warning. The measures keep their expressions and those names. `names` is
/// the model's.
void resolveCubeExpressions(TAVCube& cube, ModelNames& names, TAVLog& log);

}  // namespace tav
