#pragma once

#include "framework/model/model.h"

namespace tav {

/// A folder of a cube's package that is not placed yet. It bears its label as its name.
Owned<TAVDesignPackage> makeCubeFolder(std::string_view label);
/// A new folder in a cube's package, under another name when its own is taken.
TAVDesignPackage& addCubeFolder(TAVDesignPackage& cubePackage, std::string_view label);

}  // namespace tav
