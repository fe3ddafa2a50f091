#include <unordered_map>

#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

using Listings = std::unordered_map<std::string, int>;

/// How often a linked measure group lists each measure of its source, by the measure's ID without its case.
Listings listedMeasures(const TAVDOMElement& group) {
  Listings listings;
  const TAVDOMElement* measures = group.getFirstElement(kMeasures);
  if (!measures) return listings;
  for (const TAVDOMElement& measure : measures->getElements()) {
    const TAVDOMElement* item = measure.getFirstElement(kSource);
    const TAVDOMElement* binding = item ? item->getFirstElement(kSource) : nullptr;
    if (!binding) continue;
    const TAVDOMElement* measureId = binding->getFirstElement(kMeasureId);
    ++listings[tav::foldCase(measureId ? measureId->getValue() : measure.getFirstElementValue(kId))];
  }
  return listings;
}

}  // namespace

void TAVSQLServerXMLAImportBridge::importLinkedMeasureGroup(const TAVDOMElement& element, TAVCube& cube,
                                                            TAVDesignPackage& folder) {
  const TAVDOMElement* source = element.getFirstElement(kSource);
  const TAVString cubeId = source ? source->getFirstElementValue(kCubeId) : std::string_view();
  const TAVString groupId = source ? source->getFirstElementValue(kMeasureGroupId) : std::string_view();
  const TAVDesignPackage* sourcePackage = cubePackages_.find(tav::foldCase(cubeId.view()));
  const TAVPackage* sourceFolder = sourcePackage ? sourcePackage->getChildPackage("Measure Groups") : nullptr;
  if (!sourceFolder) return;
  MeasureGroupFolder& groups = measureGroups_[&folder];
  if (groups.byId.find(element.getFirstElementValue(kId)))
    return;  // made in the first pass, or a plain one's ID

  auto made = tav::make<TAVAliasClassifier>();
  setNameIdDescription(element, *made);
  made->nativeType = "MeasureGroup";
  TAVAliasClassifier& alias = folder.addNamespaceElementUniqueName(std::move(made), '/');
  groups.byId.add(alias, alias.nativeId);
  TAVClassifierMap& map = alias.addClassifierMap(tav::make<TAVClassifierMap>());
  map.addDestinationClassifier(alias);
  map.sourceReference = cubeId + "." + groupId;

  TAVDimension* sourceGroup =
      measureGroups_[sourceFolder].dimensionByFoldedId.find(tav::foldCase(groupId.view()));
  if (!sourceGroup) return;
  linkMeasures(*sourceGroup, listedMeasures(element), map, alias, cube);
  map.addSourceClassifier(*sourceGroup);
}

void TAVSQLServerXMLAImportBridge::linkMeasures(const TAVDimension& sourceGroup, const Listings& listings,
                                                TAVClassifierMap& map, TAVAliasClassifier& alias,
                                                TAVCube& cube) {
  for (TAVFeature& feature : sourceGroup.features) {
    TAVAliasFeature& aliasFeature = alias.addFeature(tav::make<TAVAliasFeature>(feature.getName()));
    TAVFeatureMap& featureMap = map.addFeatureMap(tav::make<TAVFeatureMap>());
    featureMap.addSourceFeature(feature);
    featureMap.addDestinationFeature(aliasFeature);

    const auto listed = listings.find(tav::foldCase(feature.nativeId.view()));
    if (listed == listings.end()) continue;
    const MeasureDescription copied{feature.getName(),
                                    feature.description,
                                    feature.nativeType,
                                    feature.nativeId,
                                    TAVAggregationOperatorType(TAVAggregationOperatorType::kOther),
                                    true};
    for (int i = 0; i < listed->second; ++i) {
      TAVMeasure& measure = createMeasure(cube, copied, true);
      if (feature.type) measure.addType(*feature.type);
    }
  }
}

void TAVSQLServerXMLAImportBridge::importLinkedMeasureGroups(const TAVDOMElement& element, TAVCube& cube) {
  const TAVDOMElement* groups = element.getFirstElement(kMeasureGroups);
  if (!groups || groups->getElementCount() == 0) return;
  TAVNamespace& package = *cube.nameSpace;
  auto* folder = tav::as<TAVDesignPackage>(package.namespaceElements.get("Measure Groups"));
  if (!folder) {
    auto made = tav::make<TAVDesignPackage>("Measure Groups");
    made->nativeType = "Measure Groups";
    made->folder = false;
    folder = &package.addNamespaceElement(std::move(made));
  }
  for (const TAVDOMElement& group : groups->getElements())
    if (group.getFirstElement(kSource)) importLinkedMeasureGroup(group, cube, *folder);
}
