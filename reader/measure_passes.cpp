#include "reader/reader.h"

// Once all cubes are there, measures take over from their sources what only those know.

namespace {

TAVFeature* firstSourceOf(const TAVFeatureMap& map) {
  return map.sourceFeatures.first();
}

/// A measure of a cube counts as structural when its source does, or when it has none.
void takeStructuralFlag(TAVMeasure& measure) {
  const TAVFeatureMap* map = measure.getDestinationOfFeatureMap();
  if (!map) return;
  TAVFeature* source = firstSourceOf(*map);
  if (!source)
    measure.structural = true;
  else if (const auto* sourceMeasure = tav::as<TAVMeasure>(source))
    measure.structural = sourceMeasure->structural;
}

}  // namespace

void TAVSQLServerXMLAImportBridge::resolveMeasures(const TAVDesignPackage& cubesFolder) {
  const std::vector<TAVPackage*> packages = cubesFolder.getChildPackages();
  for (const TAVPackage* package : packages)
    for (TAVNamespaceElement& element : package->namespaceElements)
      if (const auto* dimension = tav::as<TAVDimension>(&element)) resolveMeasureSources(*dimension);
  for (const TAVPackage* package : packages) {
    for (TAVNamespaceElement& element : package->namespaceElements) {
      if (const auto* cube = tav::as<TAVCube>(&element))
        for (TAVFeature& feature : cube->features)
          if (auto* measure = tav::as<TAVMeasure>(&feature)) takeStructuralFlag(*measure);
    }
  }
}

void TAVSQLServerXMLAImportBridge::resolveMeasureSources(const TAVDimension& dimension) {
  for (TAVFeature& feature : dimension.features) {
    TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
    if (!map) continue;
    auto* measure = tav::as<TAVMeasure>(&feature);
    if (TAVFeature* source = firstSourceOf(*map)) {
      const auto* column = tav::as<TAVColumn>(source);
      if (column && measure) measure->structural = column->structural;
      continue;
    }
    analyzer_.setCurrentFeatureMap(map);
    analyzer_.parse(map);
    analyzer_.clearCurrentFeatureMap();
    const auto* source = tav::as<TAVMeasure>(firstSourceOf(*map));
    if (!source || !measure) continue;
    measure->aggregation = source->aggregation;
    measure->hidden = source->hidden;
    measure->structural = source->structural;
  }
}
