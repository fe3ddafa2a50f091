#include "reader/reader.h"

void TAVSQLServerXMLAImportBridge::linkFeatureToColumn(std::string_view viewId, TAVFeature& feature,
                                                       std::string_view tableId, std::string_view columnId) {
  if (TAVFeature* column = columns_.find(viewId, tableId, columnId)) addColumnLineage(*column, feature);
}

void TAVSQLServerXMLAImportBridge::addColumnLineage(TAVFeature& column, TAVFeature& feature) {
  TAVClassifier* table = column.classifier.get();
  TAVClassifier* owner = feature.classifier.get();
  if (!table || !owner) return;

  TAVClassifierMap* map = owner->getDestinationOfClassifierMap();
  if (!map) {
    map = &owner->addClassifierMap(tav::make<TAVClassifierMap>());
    map->addDestinationClassifier(*owner);
  }
  if (!map->sourceClassifiers.contains(*table)) map->addSourceClassifier(*table);

  TAVFeatureMap* featureMap = feature.getDestinationOfFeatureMap();
  if (!featureMap) {
    featureMap = &map->addFeatureMap(tav::make<TAVFeatureMap>());
    featureMap->addDestinationFeature(feature);
  }
  if (!featureMap->sourceFeatures.contains(column)) featureMap->addSourceFeature(column);
}
