#include "reader/measure_passes.h"

namespace tav {
namespace {

TAVFeature* firstSourceOf(const TAVFeatureMap& map) {
  return map.sourceFeatures.first();
}

void resolveMeasureSources(XMLAExpressionAnalyzer& analyzer, const TAVDimension& dimension) {
  for (TAVFeature& feature : dimension.features) {
    TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
    if (!map) continue;
    auto* measure = as<TAVMeasure>(&feature);
    if (TAVFeature* source = firstSourceOf(*map)) {
      const auto* column = as<TAVColumn>(source);
      if (column && measure) measure->structural = column->structural;
      continue;
    }
    analyzer.setCurrentFeatureMap(map);
    analyzer.parse(map);
    analyzer.clearCurrentFeatureMap();
    const auto* source = as<TAVMeasure>(firstSourceOf(*map));
    if (!source || !measure) continue;
    measure->aggregation = source->aggregation;
    measure->hidden = source->hidden;
    measure->structural = source->structural;
  }
}

/// A measure of a cube counts as structural when its source does, or when it has none.
void takeStructuralFlag(TAVMeasure& measure) {
  const TAVFeatureMap* map = measure.getDestinationOfFeatureMap();
  if (!map) return;
  TAVFeature* source = firstSourceOf(*map);
  if (!source)
    measure.structural = true;
  else if (const auto* sourceMeasure = as<TAVMeasure>(source))
    measure.structural = sourceMeasure->structural;
}

}  // namespace

void resolveMeasures(ImportRun& run, const TAVDesignPackage& cubesFolder) {
  run.records.analyzer.setCubesFolder(cubesFolder);
  const std::vector<TAVPackage*> packages = cubesFolder.getChildPackages();
  // Only dimensions that stand in a cube's package itself: groups, in their folder, have their sources.
  for (const TAVPackage* package : packages) {
    for (TAVNamespaceElement& element : package->namespaceElements)
      if (const auto* dimension = as<TAVDimension>(&element))
        resolveMeasureSources(run.records.analyzer, *dimension);
  }
  // After the first pass, as the measures of cubes take over what that has given to those of dimensions.
  for (const TAVPackage* package : packages) {
    for (TAVNamespaceElement& element : package->namespaceElements) {
      if (const auto* cube = as<TAVCube>(&element))
        for (TAVFeature& feature : cube->features)
          if (auto* measure = as<TAVMeasure>(&feature)) takeStructuralFlag(*measure);
    }
  }
}

}  // namespace tav
