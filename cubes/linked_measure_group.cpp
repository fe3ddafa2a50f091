#include "cubes/linked_measure_group.h"

#include <unordered_map>

#include "cubes/cube_folder.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "reader/run/measures.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

using Listings = std::unordered_map<std::string, std::vector<const TAVDOMElement*>>;

/// Where a linked measure group lists each measure of its source, by the measure's ID without its case.
Listings listedMeasures(const TAVDOMElement& group) {
  Listings listings;
  const TAVDOMElement* measures = group.getFirstElement(kMeasures);
  if (!measures) return listings;
  for (const TAVDOMElement& measure : measures->getElements()) {
    const TAVDOMElement* item = measure.getFirstElement(kSource);
    const TAVDOMElement* binding = item ? item->getFirstElement(kSource) : nullptr;
    if (!binding) continue;
    const TAVDOMElement* measureId = binding->getFirstElement(kMeasureId);
    listings[foldCase(measureId ? measureId->getValue() : measure.getFirstElementValue(kId))].push_back(
        &measure);
  }
  return listings;
}

/// A measure of the cube like one that a linked group lists. It is hidden and has no lineage of its own: the
/// alias feature of its name has it.
TAVMeasure& copyIntoCube(const TAVFeature& source, TAVCube& cube) {
  const MeasureDescription copied{source.getName(),
                                  source.description,
                                  source.nativeType,
                                  source.nativeId,
                                  TAVAggregationOperatorType(TAVAggregationOperatorType::kOther),
                                  true};
  TAVMeasure& measure = createMeasure(cube, copied, true);
  if (source.type) measure.addType(*source.type);
  return measure;
}

/// Lets the alias show all measures of its source, listed or not. Returns those that the cube gets.
std::vector<TAVMeasure*> linkMeasures(ImportRun& run, const TAVDimension& source, const Listings& listings,
                                      TAVClassifierMap& map, TAVAliasClassifier& alias, TAVCube& cube) {
  std::vector<TAVMeasure*> measures;
  for (TAVFeature& feature : source.features) {
    TAVAliasFeature& shown = alias.addFeature(make<TAVAliasFeature>(feature.getName()));
    addSource(addFeatureMap(map, shown), feature);
    const auto listed = listings.find(foldCase(feature.nativeId.view()));
    if (listed == listings.end()) continue;
    for (const TAVDOMElement* element : listed->second) {
      note(run, *element, shown);
      measures.push_back(&copyIntoCube(feature, cube));
    }
  }
  return measures;
}

/// The folder that the second pass fills: the one of that name, which the first pass has made under another
/// name when the cube has a dimension or is itself called so.
TAVDesignPackage& folderByName(TAVNamespace& package) {
  if (auto* folder = as<TAVDesignPackage>(package.namespaceElements.get(label::kMeasureGroups)))
    return *folder;
  return package.addNamespaceElement(makeCubeFolder(label::kMeasureGroups));
}

}  // namespace

void importLinkedMeasureGroup(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                              TAVCube& cube, TAVDesignPackage& folder) {
  const TAVDOMElement* source = element.getFirstElement(kSource);
  const TAVString cubeId = source ? source->getFirstElementValue(kCubeId) : std::string_view();
  const TAVString groupId = source ? source->getFirstElementValue(kMeasureGroupId) : std::string_view();
  const TAVPackage* sourceFolder = groups.findFolder(cubeId);
  if (!sourceFolder) return;  // of a cube that comes later, or of none
  // Made in the first pass already, or a plain group has the ID.
  if (groups.contains(folder, element.getFirstElementValue(kId))) return;

  auto made = make<TAVAliasClassifier>();
  setNameIdDescription(element, *made);
  made->nativeType = label::kMeasureGroup;
  TAVAliasClassifier& alias = folder.addNamespaceElementUniqueName(std::move(made), '/');
  groups.add(folder, alias);
  note(run, element, alias);
  TAVClassifierMap& map = classifierMapOf(alias);
  map.sourceReference = cubeId + "." + groupId;

  TAVDimension* sourceGroup = groups.find(*sourceFolder, groupId);
  if (!sourceGroup) return;
  groups.addLinked(cube, alias, linkMeasures(run, *sourceGroup, listedMeasures(element), map, alias, cube));
  addSource(map, *sourceGroup);  // also when it has no measures
}

void importLinkedMeasureGroups(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                               TAVCube& cube) {
  const TAVDOMElement* list = element.getFirstElement(kMeasureGroups);
  if (!list || list->getElementCount() == 0) return;
  TAVDesignPackage& folder = folderByName(*cube.nameSpace);
  for (const TAVDOMElement& group : list->getElements())
    if (group.getFirstElement(kSource)) importLinkedMeasureGroup(run, groups, group, cube, folder);
  groups.nameLinkedGroups(cube);
}

}  // namespace tav
