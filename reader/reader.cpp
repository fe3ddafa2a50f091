#include "reader/reader.h"

#include "framework/model/traversal.h"

namespace {

// As many as a database of some hundred objects needs; the table grows beyond.
constexpr int kRegistryBuckets = 1024;

/// Every object of the model that is a T, in the order of the model.
template <class T> std::vector<T*> collect(TAVStoreModel& model) {
  TAVObjectCollector collector(tav::kClassRanges[tav::classId<T>].code);
  model.depthTraversal(collector);
  std::vector<T*> objects;
  for (TAVObject* object : collector.getObjects()) objects.push_back(static_cast<T*>(object));
  return objects;
}

void dropMapWithoutSource(TAVFeature& feature) {
  TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
  if (map && map->sourceFeatures.empty()) tav::destroy(*map);
}

}  // namespace

TAVSQLServerXMLAImportBridge::TAVSQLServerXMLAImportBridge(TAVLog* log)
    : analyzer_(log), log_(log), registry_(kRegistryBuckets) {}

TAVSQLServerXMLAImportBridge::~TAVSQLServerXMLAImportBridge() = default;

void TAVSQLServerXMLAImportBridge::registerObject(TAVElement& object) {
  registry_.add(&object, true, nullptr);
}

void TAVSQLServerXMLAImportBridge::cleanUp() {
  dimensions_.empty();
  cubes_.empty();
  attributeRecords_.clear();
  recordsOfDimension_.clear();
  columns_.clear();

  for (TAVClassifier* classifier : collect<TAVClassifier>(*model_)) {
    classifier->nativeId = "";
    if (auto* cube = tav::as<TAVCube>(classifier)) cube->sourceElement = nullptr;
  }
  for (TAVNamespaceElement* element : collect<TAVNamespaceElement>(*model_)) element->nativeId = "";
  for (TAVFeature* feature : collect<TAVFeature>(*model_)) {
    feature->nativeId = "";
    dropMapWithoutSource(*feature);
  }
  for (TAVClassifierMap* map : collect<TAVClassifierMap>(*model_)) {
    map->nativeId = "";
    if (map->sourceClassifiers.empty()) tav::destroy(*map);
  }
  for (TAVStoreConnection* connection : collect<TAVStoreConnection>(*model_))
    if (connection->connectionClassifiers.empty()) tav::destroy(*connection);

  root_ = nullptr;
  dom_.reset();
  dsvReader_.reset();
  typeConverter_.reset();
}
