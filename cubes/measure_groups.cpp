#include "cubes/measure_groups.h"

#include <string_view>
#include <unordered_set>

#include "framework/model/roles.h"

namespace tav {

void MeasureGroups::addCube(const TAVDesignPackage& package) {
  cubes_.add(package, foldCase(package.nativeId.view()));
}

void MeasureGroups::add(const TAVDesignPackage& folder, TAVDimension& group) {
  Folder& groups = folders_[&folder];
  groups.groups.add(group, group.nativeId);
  groups.plainGroups.add(group, foldCase(group.nativeId.view()));
}

void MeasureGroups::add(const TAVDesignPackage& folder, const TAVAliasClassifier& linkedGroup) {
  folders_[&folder].groups.add(linkedGroup, linkedGroup.nativeId);
}

bool MeasureGroups::contains(const TAVDesignPackage& folder, std::string_view groupId) const {
  const auto groups = folders_.find(&folder);
  return groups != folders_.end() && groups->second.groups.find(groupId);
}

const TAVPackage* MeasureGroups::findFolder(std::string_view cubeId) const {
  const TAVDesignPackage* package = cubes_.find(foldCase(cubeId));
  // By its name: where a dimension has taken that, the folder goes by another and cannot be linked from.
  return package ? package->getChildPackage(label::kMeasureGroups) : nullptr;
}

TAVDimension* MeasureGroups::find(const TAVPackage& folder, std::string_view groupId) const {
  const auto groups = folders_.find(&folder);
  return groups == folders_.end() ? nullptr : groups->second.plainGroups.find(foldCase(groupId));
}

void MeasureGroups::addLinked(const TAVCube& cube, const TAVAliasClassifier& group,
                              std::vector<TAVMeasure*> measures) {
  linkedGroups_[&cube].push_back({&group, std::move(measures)});
}

void MeasureGroups::nameLinkedGroups(const TAVCube& cube) {
  const auto linked = linkedGroups_.find(&cube);
  if (linked == linkedGroups_.end()) return;

  // What a group shows counts, whether it lists it or not: a reader of the model sees names alone. Groups are
  // told apart by name, too, so that one which was made twice, in two folders, is one.
  std::unordered_map<std::string_view, std::string_view> groupOfName;
  std::unordered_set<std::string_view> severalTimes;
  for (const LinkedGroup& entry : linked->second) {
    const std::string_view group = entry.group->getName();
    for (const TAVFeature& feature : entry.group->features) {
      const auto [first, isNew] = groupOfName.try_emplace(feature.getName(), group);
      if (!isNew && first->second != group) severalTimes.insert(feature.getName());
    }
  }
  for (const LinkedGroup& entry : linked->second)
    for (TAVMeasure* measure : entry.measures)
      if (severalTimes.contains(measure->getName())) measure->linkedGroup = entry.group->getName();
}

}  // namespace tav
