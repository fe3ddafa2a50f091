#include "reader/database.h"

#include "bridge/catalogue/literals.h"
#include "cubes/cube.h"
#include "cubes/linked_measure_group.h"
#include "dimensions/dimension.h"
#include "expressions/cube_expressions.h"
#include "expressions/script_details.h"
#include "framework/model/roles.h"
#include "reader/clean_up.h"
#include "reader/data_sources.h"
#include "reader/elements/element_walk.h"
#include "reader/measure_passes.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// The database's schema, which dimensions are listed in. It has no name of its own: a name that is free
/// among the model's packages stands in for it, and shows as the model's until the database gives its own.
TAVOlapSchema& addSchema(ImportRun& run, const TAVDOMElement& database) {
  auto made = make<TAVOlapSchema>();
  made->nativeId = database.getFirstElementValue(kId);
  made->description = database.getFirstElementValue(kDescription);
  TAVOlapSchema& schema = run.model->addDataPackageUniqueName(std::move(made), '/');
  run.model->setName(schema.getName());
  run.records.add(schema);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_MODEL.log(*run.log, run.model->getName());
  return schema;
}

/// A package of the model; `folder` for those that hold what the definition lists.
TAVDesignPackage& addPackage(ImportRun& run, std::string_view label, bool folder) {
  auto package = make<TAVDesignPackage>(label);
  if (folder) package->nativeType = label;
  package->folder = folder;
  return run.model->addDesignPackageUniqueName(std::move(package), '/');
}

/// Reading views may leave schemas in the model that are not the database's.
void deleteForeignSchemas(const TAVStoreModel& model, const TAVOlapSchema& schema) {
  std::vector<TAVDataPackage*> foreign;
  for (TAVDataPackage& package : model.dataPackages)
    if (is<TAVOlapSchema>(package) && &package != &schema) foreign.push_back(&package);
  for (TAVDataPackage* package : foreign) destroy(*package);
}

void importDimensions(ImportRun& run, const TAVDOMElement& database, TAVOlapSchema& schema,
                      TAVDesignPackage& folder) {
  const TAVDOMElement* dimensions = database.getFirstElement(kDimensions);
  if (!dimensions) return;
  for (const TAVDOMElement& element : dimensions->getElements()) {
    if (Owned<TAVDimension> made = importDimension(run, element, schema)) {
      TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
      run.dimensions.add(dimension, dimension.nativeId);
    }
  }
}

std::vector<CubeElement> importCubes(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& database,
                                     TAVDesignPackage& folder) {
  std::vector<CubeElement> read;
  const TAVDOMElement* cubes = database.getFirstElement(kCubes);
  if (!cubes) return read;
  for (const TAVDOMElement& element : cubes->getElements())
    if (TAVCube* cube = importCube(run, groups, element, folder)) read.push_back({cube, &element});
  return read;
}

/// Elements are given back on the way.
void importDetails(ImportRun& run, const TAVDOMElement& database, const std::vector<CubeElement>& cubes,
                   ModelNames& names) {
  std::vector<CubeTexts> texts;
  texts.reserve(cubes.size());
  for (const CubeElement& read : cubes) texts.push_back(textsOf(read));
  readDetails(run, database);
  importExpressionDetails(run, texts, names);
}

}  // namespace

void importDatabase(ImportRun& run, const TAVDOMElement& database) {
  TAVOlapSchema& schema = addSchema(run, database);
  addPackage(run, label::kJoinGroups, false);
  setNameIdDescription(database, *run.model);
  addPackage(run, label::kTransformations, false);

  // Each step refers to what the steps before it have made.
  importDataSources(run, database);
  TAVDesignPackage& viewFolder = addPackage(run, label::kDataSourceViews, true);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DSVS.log(*run.log);
  importDataSourceViews(run, database, viewFolder);
  deleteForeignSchemas(*run.model, schema);

  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSIONS.log(*run.log);
  importDimensions(run, database, schema, addPackage(run, label::kDimensions, true));

  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBES.log(*run.log);
  TAVDesignPackage& cubesFolder = addPackage(run, label::kCubes, true);
  MeasureGroups groups;
  const std::vector<CubeElement> cubes = importCubes(run, groups, database, cubesFolder);
  // Cubes link groups of cubes behind them, and expressions name what such groups show. A cube's expressions
  // are resolved before the next cube gets its linked groups.
  ModelNames names(*run.model);
  for (const CubeElement& read : cubes) {
    importLinkedMeasureGroups(run, groups, *read.element, *read.cube);
    resolveCubeExpressions(*read.cube, names, *run.log);
  }
  resolveMeasures(run, cubesFolder);
  if (run.details) importDetails(run, database, cubes, names);
  tidyPackages(*run.model);
}

}  // namespace tav
