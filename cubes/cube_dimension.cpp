#include "cubes/cube_dimension.h"

#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// Lets the alias show every feature of what it stands for, in order, with the lineage of each.
void mirrorFeatures(const TAVClassifier& source, TAVAliasClassifier& alias, TAVClassifierMap& map) {
  for (TAVFeature& feature : source.features) {
    auto made = make<TAVAliasFeature>(feature.getName());
    made->description = feature.description;
    addSource(addFeatureMap(map, alias.addFeature(std::move(made))), feature);
  }
}

}  // namespace

void importCubeDimension(ImportRun& run, const TAVDOMElement& element, TAVCube& cube,
                         TAVDesignPackage& package, TAVOlapSchema& schema) {
  const std::string_view dimensionId = element.getFirstElementValue(kDimensionId);
  TAVDimension* dimension = run.dimensions.find(dimensionId);
  if (!dimension) return;
  auto madeAssociation = make<TAVCubeDimensionAssociation>();
  setNameDescription(element, *madeAssociation);
  madeAssociation->setPhysicalName(dimensionId);
  madeAssociation->addDimension(*dimension);
  const TAVCubeDimensionAssociation& association =
      cube.addCubeDimensionAssociation(std::move(madeAssociation));

  auto madeAlias = make<TAVAliasClassifier>(association.getName());
  madeAlias->nativeType = label::kDimension;
  madeAlias->description = association.description;
  TAVAliasClassifier& alias = package.addNamespaceElementUniqueName(std::move(madeAlias), '/');
  schema.addImportedNamespaceElementUniqueName(alias, '/');
  note(run, element, alias);

  TAVClassifierMap& map = classifierMapOf(alias);
  addSource(map, *dimension);  // one without attributes feeds the alias all the same
  mirrorFeatures(*dimension, alias, map);
}

}  // namespace tav
