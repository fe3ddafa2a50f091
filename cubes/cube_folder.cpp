#include "cubes/cube_folder.h"

namespace tav {

Owned<TAVDesignPackage> makeCubeFolder(std::string_view label) {
  auto folder = make<TAVDesignPackage>(label);
  folder->nativeType = label;
  folder->folder = false;
  return folder;
}

TAVDesignPackage& addCubeFolder(TAVDesignPackage& cubePackage, std::string_view label) {
  return cubePackage.addNamespaceElementUniqueName(makeCubeFolder(label), '/');
}

}  // namespace tav
