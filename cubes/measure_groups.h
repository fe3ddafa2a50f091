#pragma once

#include <unordered_map>
#include <vector>

#include "framework/model/model.h"
#include "reader/run/id_index.h"

namespace tav {

/// The measure groups of all cubes while cubes are imported: found by ID, as groups that are linked from
/// another cube name them, and the measures that such groups have brought into a cube. The IDs of cubes and
/// of the groups that links lead to are compared without their letter case, those in one folder exactly.
class MeasureGroups {
 public:
  void addCube(const TAVDesignPackage& package);
  /// Enters a group, plain or linked, that has its place in a cube's folder.
  void add(const TAVDesignPackage& folder, TAVDimension& group);
  void add(const TAVDesignPackage& folder, const TAVAliasClassifier& linkedGroup);

  /// Whether the folder has a group of this ID.
  [[nodiscard]] bool contains(const TAVDesignPackage& folder, std::string_view groupId) const;
  /// The folder that the cube's groups can be linked from, or null.
  [[nodiscard]] const TAVPackage* findFolder(std::string_view cubeId) const;
  /// The first plain group of this ID in a folder, or null.
  [[nodiscard]] TAVDimension* find(const TAVPackage& folder, std::string_view groupId) const;

  /// Notes a linked group of a cube with those of the cube's measures that it lists.
  void addLinked(const TAVCube& cube, const TAVAliasClassifier& group, std::vector<TAVMeasure*> measures);
  /// Lets the measures that linked groups have brought into a cube tell their group, where several groups
  /// have a measure of the name. To be called once, when all linked groups of the cube are there.
  void nameLinkedGroups(const TAVCube& cube);

 private:
  struct Folder {
    IdIndex<const TAVClassifier> groups;
    IdIndex<TAVDimension> plainGroups;
  };
  struct LinkedGroup {
    const TAVAliasClassifier* group;
    std::vector<TAVMeasure*> measures;
  };

  IdIndex<const TAVDesignPackage> cubes_;
  std::unordered_map<const TAVPackage*, Folder> folders_;
  std::unordered_map<const TAVCube*, std::vector<LinkedGroup>> linkedGroups_;
};

}  // namespace tav
