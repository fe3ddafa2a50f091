#include "views/view_index.h"

#include "framework/model/model.h"

namespace tav {

namespace {

std::string keyOf(std::string_view schema, std::string_view name, std::string_view dataSourceId) {
  std::string key = foldCase(schema.empty() ? std::string_view("dbo") : schema);
  key += '\0';
  key += foldCase(name);
  key += '\0';
  key += dataSourceId;
  return key;
}

}  // namespace

ViewIndex::ViewIndex(const TAVDesignPackage& view) {
  for (TAVNamespaceElement& element : view.namespaceElements) {
    auto* table = as<TAVTable>(&element);
    if (table && table->query.empty())
      tables_.emplace(keyOf(table->schemaName, table->physicalName, table->dataSourceId), table);
  }
}

TAVTable* ViewIndex::findTable(const std::vector<std::string>& nameParts,
                               std::string_view dataSourceId) const {
  if (nameParts.empty() || nameParts.size() > 2) return nullptr;
  const std::string_view schema = nameParts.size() == 2 ? std::string_view(nameParts.front()) : "";
  const auto found = tables_.find(keyOf(schema, nameParts.back(), dataSourceId));
  return found == tables_.end() ? nullptr : found->second;
}

const ViewIndex::Names& ViewIndex::namesOf(const TAVClassifier& classifier) {
  const auto [entry, isNew] = names_.try_emplace(&classifier);
  if (isNew) {
    for (TAVFeature& feature : classifier.features) {
      entry->second.physical[foldCase(feature.physicalName.view())].push_back(&feature);
      entry->second.shown[foldCase(feature.getName().view())].push_back(&feature);
    }
  }
  return entry->second;
}

const std::vector<TAVFeature*>& ViewIndex::findFeatures(const TAVClassifier& classifier,
                                                        std::string_view name) {
  static const std::vector<TAVFeature*> kNoFeatures;
  const Names& names = namesOf(classifier);
  const std::string key = foldCase(name);
  for (const Features* features : {&names.physical, &names.shown})
    if (const auto found = features->find(key); found != features->end()) return found->second;
  return kNoFeatures;
}

}  // namespace tav
