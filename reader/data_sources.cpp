#include "reader/data_sources.h"

#include "framework/std/connection_string.h"
#include "framework/types/data_store_version.h"
#include "framework/types/providers.h"
#include "reader/run/vocabulary.h"
#include "views/connection_index.h"
#include "views/dsv_reader.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {

void importDataSources(ImportRun& run, const TAVDOMElement& database) {
  const TAVDOMElement* sources = database.getFirstElement(kDataSources);
  if (!sources) return;
  for (const TAVDOMElement& source : sources->getElements()) {
    const TAVString id = source.getFirstElementValue(kId);
    const TAVString name = source.getFirstElementValue(kName);
    // Asked by name, which is the ID only where a data source has no other: of two with one ID and different
    // names both are made.
    if (run.model->storeConnections.get(id)) continue;
    auto connection = make<TAVStoreConnection>(name.empty() ? id : name);
    connection->nativeId = id;
    connection->description = id;
    connection->connectionString = source.getFirstElementValue(kConnectionString);
    const TAVString provider = getConnectionStringValue(connection->connectionString, "Provider");
    setDataStore(connection.get(), findDataStoreByProvider(provider));
    note(run, source, run.model->addStoreConnection(std::move(connection)));
  }
}

void importDataSourceViews(ImportRun& run, const TAVDOMElement& database, TAVDesignPackage& folder) {
  const TAVDOMElement* views = database.getFirstElement(kDataSourceViews);
  if (!views) return;
  const auto connections = std::make_shared<ConnectionIndex>(*run.model);
  for (const TAVDOMElement& element : views->getElements()) {
    TAVDsvReader reader(run.model, run.log, true, true, connections);
    Owned<TAVDesignPackage> view = reader.importDataSourceView(&element);
    if (!view) continue;
    TAVDesignPackage& placed = folder.addNamespaceElementUniqueName(std::move(view), '/');
    run.columns.add(placed);
    note(run, element, placed);
  }
}

}  // namespace tav
