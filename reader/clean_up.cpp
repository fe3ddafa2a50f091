#include "reader/clean_up.h"

#include "framework/model/roles.h"
#include "framework/model/traversal.h"

namespace tav {
namespace {

/// Erases IDs and notes what is to be deleted because nothing leads to it. One walk does it all: a large
/// model is seldom in the cache, so that each walk costs as much as the work itself.
class Cleaner : public TAVTraversalOperation {
 public:
  void visit(TAVObject& object) override {
    if (auto* element = as<TAVNamespaceElement>(&object)) {
      element->nativeId = "";
    } else if (auto* feature = as<TAVFeature>(&object)) {
      feature->nativeId = "";
      TAVFeatureMap* map = feature->getDestinationOfFeatureMap();
      if (map && map->sourceFeatures.empty()) empty_.push_back(map);
    } else if (auto* map = as<TAVClassifierMap>(&object)) {
      map->nativeId = "";
      if (map->sourceClassifiers.empty()) emptyOwners_.push_back(map);
    } else if (auto* connection = as<TAVStoreConnection>(&object)) {
      connection->nativeId = "";
      if (connection->connectionClassifiers.empty()) emptyOwners_.push_back(connection);
    }
  }

  void deleteEmpty(const TAVStoreModel& model, Details* details) {
    for (TAVObject* map : empty_) destroy(*map);
    for (TAVObject* owner : emptyOwners_) {
      const auto* connection = as<TAVStoreConnection>(owner);
      if (connection && details && details->find(*connection) != kNoItem)
        details->release(*connection, ObjectKind::dataSource, details->itemOf(model));
      destroy(*owner);
    }
  }

 private:
  std::vector<TAVObject*> empty_;
  std::vector<TAVObject*> emptyOwners_;  // which may own some of the others, and so go after them
};

}  // namespace

void tidyPackages(TAVStoreModel& model) {
  for (TAVStoreConnection& connection : model.storeConnections) connection.nativeType = label::kDataSource;
  std::vector<TAVPackage*> empty;
  for (TAVDataPackage& package : model.dataPackages)
    if (package.getModelObjectCount() == 0) empty.push_back(&package);
  for (TAVDesignPackage& package : model.designPackages)
    if (package.getChildPackageCount() == 0 && package.getModelElementCount() == 0) empty.push_back(&package);
  for (TAVPackage* package : empty) destroy(*package);
}

void cleanModel(TAVStoreModel& model, Details* details) {
  Cleaner cleaner;
  model.depthTraversal(cleaner);
  cleaner.deleteEmpty(model, details);
}

}  // namespace tav
