#include "reader/reader.h"

#include "framework/model/traversal.h"

namespace {

// As many as a database of some hundred objects needs; the table grows beyond.
constexpr int kRegistryBuckets = 1024;

/// Takes the definition's IDs off a model and notes what is to be deleted because nothing leads to it. One
/// walk does it all: a large model is seldom in the cache, so that each walk costs as much as the work
/// itself.
class Cleaner : public TAVTraversalOperation {
 public:
  void visit(TAVObject& object) override {
    if (auto* element = tav::as<TAVNamespaceElement>(&object)) {
      element->nativeId = "";
      if (auto* cube = tav::as<TAVCube>(element)) cube->sourceElement = nullptr;
    } else if (auto* feature = tav::as<TAVFeature>(&object)) {
      feature->nativeId = "";
      TAVFeatureMap* map = feature->getDestinationOfFeatureMap();
      if (map && map->sourceFeatures.empty()) empty_.push_back(map);
    } else if (auto* map = tav::as<TAVClassifierMap>(&object)) {
      map->nativeId = "";
      if (map->sourceClassifiers.empty()) emptyOwners_.push_back(map);
    } else if (auto* connection = tav::as<TAVStoreConnection>(&object)) {
      if (connection->connectionClassifiers.empty()) emptyOwners_.push_back(connection);
    }
  }

  void deleteEmpty() {
    for (TAVObject* map : empty_) tav::destroy(*map);
    for (TAVObject* owner : emptyOwners_) tav::destroy(*owner);
  }

 private:
  std::vector<TAVObject*> empty_;
  std::vector<TAVObject*> emptyOwners_;  // which may own some of the others, and so go after them
};

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

  Cleaner cleaner;
  model_->depthTraversal(cleaner);
  cleaner.deleteEmpty();

  root_ = nullptr;
  dom_.reset();
  dsvReader_.reset();
  typeConverter_.reset();
}
