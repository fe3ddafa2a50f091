#include "expressions/model_names.h"

#include "framework/model/roles.h"

namespace tav {
namespace {

void addFeatures(IdIndex<TAVFeature>& index, const TAVPackage* folder, std::string_view nativeType) {
  if (!folder) return;
  for (TAVNamespaceElement& element : folder->namespaceElements) {
    const auto* classifier = as<TAVClassifier>(&element);
    if (!classifier || classifier->nativeType != nativeType) continue;
    for (TAVFeature& feature : classifier->features) index.add(feature, feature.getName());
  }
}

}  // namespace

ModelNames::ModelNames(const TAVStoreModel& model) {
  const TAVPackage* folder = model.designPackages.get(label::kDimensions);
  if (!folder) return;
  std::vector<const TAVPackage*> waiting{folder};
  while (!waiting.empty()) {
    const TAVPackage& package = *waiting.back();
    waiting.pop_back();
    if (is<TAVDesignPackage>(package)) {
      for (TAVNamespaceElement& element : package.namespaceElements)
        if (auto* dimension = as<TAVDimension>(&element))
          dimensions_.add(*dimension, foldCase(dimension->getName().view()));
    }
    const std::vector<TAVPackage*> children = package.getChildPackages();
    waiting.insert(waiting.end(), children.rbegin(), children.rend());
  }
}

TAVDimension* ModelNames::findDimension(std::string_view name) const {
  return dimensions_.find(foldCase(name));
}

TAVLevel* ModelNames::findLevel(const TAVHierarchy& hierarchy, std::string_view name) {
  const auto [place, isNew] = levels_.try_emplace(&hierarchy);
  if (isNew) {
    for (const TAVHierarchyLevelAssociation& association : hierarchy.hierarchyLevelAssociations)
      if (TAVLevel* level = association.level.get())
        place->second.add(*level, foldCase(level->getName().view()));
  }
  return place->second.find(foldCase(name));
}

MeasureNames::MeasureNames(const TAVDesignPackage& cubePackage) {
  addFeatures(groups_, cubePackage.getChildPackage(label::kMeasureGroups), label::kMeasureGroup);
  addFeatures(calculated_, cubePackage.getChildPackage(label::kCalculatedMeasures),
              label::kCalculatedMeasures);
}

}  // namespace tav
