#include "bridge/catalogue/literals.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

bool hasChildren(const TAVDOMElement* element) {
  return element && element->getElementCount() > 0;
}

void importPerspectives(const TAVDOMElement& element, TAVCube& cube) {
  const TAVDOMElement* perspectives = element.getFirstElement(kPerspectives);
  if (!perspectives) return;
  for (const TAVDOMElement& perspective : perspectives->getElements()) {
    if (perspective.getTagName() != kPerspective) continue;
    auto synonym = tav::make<TAVSynonym>(perspective.getFirstElementValue(kName));
    synonym->nativeId = perspective.getFirstElementValue(kId);
    synonym->nativeType = "Perspective";
    cube.addSynonym(std::move(synonym));
  }
}

}  // namespace

TAVCube* TAVSQLServerXMLAImportBridge::importCube(const TAVDOMElement& element,
                                                  TAVDesignPackage& cubesFolder) {
  if (element.getTagName() != kCube) return nullptr;
  auto madeSchema = tav::make<TAVOlapSchema>();
  setNameIdDescription(element, *madeSchema);
  madeSchema->nativeType = "Cube";
  TAVOlapSchema& schema = model_->addDataPackage(std::move(madeSchema));
  registerObject(schema);

  auto madeCube = tav::make<TAVCube>();
  madeCube->nativeType = "Cube";
  madeCube->sourceElement = &element;
  setNameIdDescription(element, *madeCube);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBE.log(*log_, madeCube->getName());

  auto madePackage = tav::make<TAVDesignPackage>(madeCube->getName());
  madePackage->nativeType = "Cube";
  madePackage->nativeId = element.getFirstElementValue(kId);
  TAVDesignPackage& package = cubesFolder.addNamespaceElementUniqueName(std::move(madePackage), '/');
  cubePackages_.add(package, tav::foldCase(package.nativeId.view()));
  TAVCube& cube = package.addNamespaceElementUniqueName(std::move(madeCube), '/');

  TAVClassifierMap& map = cube.addClassifierMap(tav::make<TAVClassifierMap>());
  map.addDestinationClassifier(cube);
  if (const TAVDOMElement* source = element.getFirstElement(kSource))
    map.sourceReference = source->getFirstElementValue(kDataSourceViewId);

  importPerspectives(element, cube);
  importCubeDimensions(element, cube, package, schema);
  importMeasureGroups(element, cube, package);
  cubes_.add(&cube, true, nullptr);
  registerObject(cube);
  schema.addImportedNamespaceElementUniqueName(cube, '/');
  importMdxScripts(element, cube, package);
  importKpis(element.getFirstElement(kKpis), cube, package);
  return &cube;
}

TAVDesignPackage& TAVSQLServerXMLAImportBridge::addCubeFolder(TAVDesignPackage& cubePackage,
                                                              const TAVString& name) {
  auto folder = tav::make<TAVDesignPackage>(name);
  folder->nativeType = name;
  folder->folder = false;
  return cubePackage.addNamespaceElementUniqueName(std::move(folder), '/');
}

void TAVSQLServerXMLAImportBridge::importMdxScripts(const TAVDOMElement& element, TAVCube& cube,
                                                    TAVDesignPackage& package) {
  const TAVDOMElement* scripts = element.getFirstElement(kMdxScripts);
  if (!hasChildren(scripts)) return;
  TAVDesignPackage& folder = addCubeFolder(package, "Calculated Measures");
  auto made = tav::make<TAVDimension>("Calculated Measures");
  made->nativeType = "Calculated Measures";
  TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
  dimension.addClassifierMap(tav::make<TAVClassifierMap>()).addDestinationClassifier(dimension);
  for (const TAVDOMElement& script : scripts->getElements()) importMdxScript(script, dimension, cube);
}

void TAVSQLServerXMLAImportBridge::importMeasureGroups(const TAVDOMElement& element, TAVCube& cube,
                                                       TAVDesignPackage& package) {
  const TAVDOMElement* groups = element.getFirstElement(kMeasureGroups);
  if (!hasChildren(groups)) return;
  TAVDesignPackage& folder = addCubeFolder(package, "Measure Groups");
  const TAVString& viewId = cube.getDestinationOfClassifierMap()->sourceReference;
  for (const TAVDOMElement& group : groups->getElements()) {
    if (group.getFirstElement(kSource))
      importLinkedMeasureGroup(group, cube, folder);
    else
      importMeasureGroup(group, cube, viewId, folder);
  }
}
