#include "bridge/catalogue/literals.h"
#include "framework/std/connection_string.h"
#include "framework/types/data_store_version.h"
#include "framework/types/providers.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"
#include "views/connection_index.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

void TAVSQLServerXMLAImportBridge::importDatabase(const TAVDOMElement& database, TAVOlapSchema& schema) {
  importDataSources(database);
  importDataSourceViews(database);
  deleteForeignSchemas(schema);
  importDimensions(database, schema);

  const TAVDOMElement* cubes = database.getFirstElement(kCubes);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBES.log(*log_);
  TAVDesignPackage& folder = addFolder("Cubes");
  if (cubes) importCubes(*cubes, folder);
  analyzer_.setCubesFolder(folder);
  resolveMeasures(folder);
}

TAVDesignPackage& TAVSQLServerXMLAImportBridge::addFolder(const TAVString& name) {
  auto folder = tav::make<TAVDesignPackage>(name);
  folder->nativeType = name;
  folder->folder = true;
  return model_->addDesignPackageUniqueName(std::move(folder), '/');
}

void TAVSQLServerXMLAImportBridge::importDataSources(const TAVDOMElement& database) {
  const TAVDOMElement* sources = database.getFirstElement(kDataSources);
  if (!sources) return;
  for (const TAVDOMElement& source : sources->getElements()) {
    const TAVString id = source.getFirstElementValue(kId);
    const TAVString name = source.getFirstElementValue(kName);
    if (model_->storeConnections.get(id)) continue;
    auto connection = tav::make<TAVStoreConnection>(name.empty() ? id : name);
    connection->nativeId = id;
    connection->description = id;
    connection->connectionString = source.getFirstElementValue(kConnectionString);
    const TAVString provider = getConnectionStringValue(connection->connectionString, "Provider");
    setDataStore(connection.get(), findDataStoreByProvider(provider));
    model_->addStoreConnection(std::move(connection));
  }
}

void TAVSQLServerXMLAImportBridge::importDataSourceViews(const TAVDOMElement& database) {
  const TAVDOMElement* views = database.getFirstElement(kDataSourceViews);
  viewFolder_ = &addFolder("Data Source Views");
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DSVS.log(*log_);
  if (!views) return;
  const auto connections = std::make_shared<tav::ConnectionIndex>(*model_);
  for (const TAVDOMElement& element : views->getElements()) {
    dsvReader_ = std::make_unique<TAVDsvReader>(model_, log_, true, true, connections);
    if (tav::Owned<TAVDesignPackage> view = dsvReader_->importDataSourceView(&element))
      indexColumns(viewFolder_->addNamespaceElementUniqueName(std::move(view), '/'));
    dsvReader_.reset();
  }
}

void TAVSQLServerXMLAImportBridge::indexColumns(const TAVDesignPackage& view) {
  for (const TAVModelElement* table : view.getModelElements()) {
    for (TAVFeature& column : static_cast<const TAVClassifier*>(table)->features)
      columns_.add(column, view.nativeId, table->nativeId,
                   column.nativeId.empty() ? column.physicalName : column.nativeId);
  }
}

void TAVSQLServerXMLAImportBridge::deleteForeignSchemas(const TAVOlapSchema& schema) {
  std::vector<TAVDataPackage*> foreign;
  for (TAVDataPackage& package : model_->dataPackages)
    if (tav::is<TAVOlapSchema>(package) && &package != &schema) foreign.push_back(&package);
  for (TAVDataPackage* package : foreign) tav::destroy(*package);
}

void TAVSQLServerXMLAImportBridge::importDimensions(const TAVDOMElement& database, TAVOlapSchema& schema) {
  const TAVDOMElement* dimensions = database.getFirstElement(kDimensions);
  QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSIONS.log(*log_);
  TAVDesignPackage& folder = addFolder("Dimensions");
  if (!dimensions) return;
  for (const TAVDOMElement& element : dimensions->getElements()) {
    if (tav::Owned<TAVDimension> made = importDimension(element, schema)) {
      TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
      dimensionsById_.add(dimension, dimension.nativeId);
    }
  }
}

void TAVSQLServerXMLAImportBridge::importCubes(const TAVDOMElement& cubes, TAVDesignPackage& folder) {
  std::vector<TAVCube*> imported;
  for (const TAVDOMElement& element : cubes.getElements())
    if (TAVCube* cube = importCube(element, folder)) imported.push_back(cube);
  names_.emplace(*model_);
  for (TAVCube* cube : imported) {
    importLinkedMeasureGroups(*cube->sourceElement, *cube);
    resolveCubeExpressions(*cube);
  }
}
