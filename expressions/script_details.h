#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "expressions/model_names.h"
#include "reader/run/import_run.h"

namespace tav {

/// A cube with the element that it was made from, which is read once more when all cubes are there.
struct CubeElement {
  TAVCube* cube;
  const TAVDOMElement* element;
};

/// What is read of a cube's element once more when most of it is given back. The texts live as long as the
/// document.
struct CubeTexts {
  struct Script {
    std::string_view name;
    std::optional<std::vector<std::string_view>> commands;
  };
  /// A measure of a linked group.
  struct LinkedMeasure {
    std::string_view group;
    std::string_view name;
  };

  const TAVCube* cube;
  std::vector<Script> scripts;
  std::vector<LinkedMeasure> linkedMeasures;
};
CubeTexts textsOf(const CubeElement& read);

/// Writes what the MDX scripts of all cubes hold into the details, and what all expressions name: those of
/// the scripts, of the model's measures, and of the run's list. Called when the model is complete, and only
/// when details are wanted.
void importExpressionDetails(ImportRun& run, const std::vector<CubeTexts>& cubes, ModelNames& names);

}  // namespace tav
