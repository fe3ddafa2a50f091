#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

/// Lets the alias show every feature of what it stands for, in order, with the lineage of each.
void mirrorFeatures(const TAVClassifier& source, TAVAliasClassifier& alias, TAVClassifierMap& map) {
  for (TAVFeature& feature : source.features) {
    auto made = tav::make<TAVAliasFeature>(feature.getName());
    made->description = feature.description;
    TAVAliasFeature& aliasFeature = alias.addFeature(std::move(made));
    TAVFeatureMap& featureMap = map.addFeatureMap(tav::make<TAVFeatureMap>());
    featureMap.addSourceFeature(feature);
    featureMap.addDestinationFeature(aliasFeature);
  }
}

}  // namespace

void TAVSQLServerXMLAImportBridge::importCubeDimensions(const TAVDOMElement& element, TAVCube& cube,
                                                        TAVDesignPackage& package, TAVOlapSchema& schema) {
  const TAVDOMElement* dimensions = element.getFirstElement(kDimensions);
  if (!dimensions) return;
  for (const TAVDOMElement& child : dimensions->getElements())
    if (child.getTagName() == kDimension) importCubeDimension(child, cube, package, schema);
}

void TAVSQLServerXMLAImportBridge::importCubeDimension(const TAVDOMElement& element, TAVCube& cube,
                                                       TAVDesignPackage& package, TAVOlapSchema& schema) {
  const std::string_view dimensionId = element.getFirstElementValue(kDimensionId);
  TAVDimension* dimension = dimensionsById_.find(dimensionId);
  if (!dimension) return;
  auto madeAssociation = tav::make<TAVCubeDimensionAssociation>();
  setNameIdDescription(element, *madeAssociation);
  madeAssociation->nativeId = "";
  madeAssociation->setPhysicalName(dimensionId);
  madeAssociation->addDimension(*dimension);
  const TAVCubeDimensionAssociation& association =
      cube.addCubeDimensionAssociation(std::move(madeAssociation));

  auto madeAlias = tav::make<TAVAliasClassifier>(association.getName());
  madeAlias->nativeType = "Dimension";
  madeAlias->description = association.description;
  TAVAliasClassifier& alias = package.addNamespaceElementUniqueName(std::move(madeAlias), '/');
  schema.addImportedNamespaceElementUniqueName(alias, '/');

  TAVClassifierMap& map = alias.addClassifierMap(tav::make<TAVClassifierMap>());
  map.addSourceClassifier(*dimension);
  map.addDestinationClassifier(alias);
  mirrorFeatures(*dimension, alias, map);
}
