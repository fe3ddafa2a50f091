#include "cubes/cube.h"

#include "bridge/catalogue/literals.h"
#include "cubes/cube_dimension.h"
#include "cubes/cube_folder.h"
#include "cubes/kpi.h"
#include "cubes/linked_measure_group.h"
#include "cubes/measure_group.h"
#include "expressions/mdx_script.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// The list of this name, when there is something in it; or null. A folder is made only for such a list.
const TAVDOMElement* findFilledList(const TAVDOMElement& cube, std::string_view tag) {
  const TAVDOMElement* list = cube.getFirstElement(tag);
  return list && list->getElementCount() > 0 ? list : nullptr;
}

std::string_view viewIdOf(const TAVDOMElement& cube) {
  const TAVDOMElement* source = cube.getFirstElement(kSource);
  return source ? source->getFirstElementValue(kDataSourceViewId) : std::string_view();
}

TAVOlapSchema& addSchema(ImportRun& run, const TAVDOMElement& element) {
  auto made = make<TAVOlapSchema>();
  setNameIdDescription(element, *made);
  made->nativeType = label::kCube;
  TAVOlapSchema& schema = run.model->addDataPackage(std::move(made));
  run.records.add(schema);
  return schema;
}

TAVDesignPackage& addPackage(const TAVCube& cube, TAVDesignPackage& cubesFolder) {
  auto made = make<TAVDesignPackage>(cube.getName());
  made->nativeType = label::kCube;
  made->nativeId = cube.nativeId;
  return cubesFolder.addNamespaceElementUniqueName(std::move(made), '/');
}

void importPerspectives(ImportRun& run, const TAVDOMElement& element, TAVCube& cube) {
  const TAVDOMElement* perspectives = element.getFirstElement(kPerspectives);
  if (!perspectives) return;
  for (const TAVDOMElement& perspective : perspectives->getElements()) {
    if (perspective.getTagName() != kPerspective) continue;
    auto synonym = make<TAVSynonym>(perspective.getFirstElementValue(kName));
    synonym->nativeType = label::kPerspective;
    note(run, perspective, cube.addSynonym(std::move(synonym)));
  }
}

void importCubeDimensions(ImportRun& run, const TAVDOMElement& element, TAVCube& cube,
                          TAVDesignPackage& package, TAVOlapSchema& schema) {
  const TAVDOMElement* dimensions = element.getFirstElement(kDimensions);
  if (!dimensions) return;
  for (const TAVDOMElement& child : dimensions->getElements())
    if (child.getTagName() == kDimension) importCubeDimension(run, child, cube, package, schema);
}

void importMeasureGroups(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element, TAVCube& cube,
                         TAVDesignPackage& package) {
  const TAVDOMElement* list = findFilledList(element, kMeasureGroups);
  if (!list) return;
  TAVDesignPackage& folder = addCubeFolder(package, label::kMeasureGroups);
  for (const TAVDOMElement& group : list->getElements()) {
    if (group.getFirstElement(kSource))
      importLinkedMeasureGroup(run, groups, group, cube, folder);
    else
      importMeasureGroup(run, groups, group, cube, viewIdOf(element), folder);
  }
}

void importMdxScripts(ImportRun& run, const TAVDOMElement& element, TAVCube& cube,
                      TAVDesignPackage& package) {
  const TAVDOMElement* scripts = findFilledList(element, kMdxScripts);
  if (!scripts) return;
  TAVDesignPackage& folder = addCubeFolder(package, label::kCalculatedMeasures);
  auto made = make<TAVDimension>(label::kCalculatedMeasures);
  made->nativeType = label::kCalculatedMeasures;
  TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
  for (const TAVDOMElement& script : scripts->getElements()) importMdxScript(run, script, dimension, cube);
}

void importKpis(ImportRun& run, const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& package) {
  const TAVDOMElement* kpis = findFilledList(element, kKpis);
  if (!kpis) return;
  TAVDesignPackage& folder = addCubeFolder(package, label::kKpis);
  for (const TAVDOMElement& kpi : kpis->getElements()) importKpi(run, kpi, cube, folder);
}

}  // namespace

TAVCube* importCube(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element,
                    TAVDesignPackage& cubesFolder) {
  if (element.getTagName() != kCube) return nullptr;
  TAVOlapSchema& schema = addSchema(run, element);

  auto made = make<TAVCube>();
  setNameIdDescription(element, *made);
  made->nativeType = label::kCube;
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBE.log(*run.log, made->getName());
  TAVDesignPackage& package = addPackage(*made, cubesFolder);
  groups.addCube(package);
  TAVCube& cube = package.addNamespaceElementUniqueName(std::move(made), '/');
  note(run, element, cube);
  classifierMapOf(cube).sourceReference = viewIdOf(element);

  // The order in which the cube gets its measures, and so the names that those have which repeat.
  importPerspectives(run, element, cube);
  importCubeDimensions(run, element, cube, package, schema);
  importMeasureGroups(run, groups, element, cube, package);
  run.records.add(cube);
  schema.addImportedNamespaceElementUniqueName(cube, '/');
  importMdxScripts(run, element, cube, package);
  importKpis(run, element, cube, package);
  return &cube;
}

}  // namespace tav
