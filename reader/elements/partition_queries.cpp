#include "reader/elements/partition_queries.h"

#include "framework/expression/query_resolver.h"
#include "framework/model/roles.h"

namespace tav {

const std::vector<ViewIndex>& PartitionQueries::views() {
  if (!isMade_) {
    isMade_ = true;
    if (const TAVDesignPackage* folder = run_.model->designPackages.get(label::kDataSourceViews))
      for (const TAVNamespaceElement& element : folder->namespaceElements)
        if (const auto* view = as<TAVDesignPackage>(&element)) views_.emplace_back(*view);
  }
  return views_;
}

void PartitionQueries::add(ItemId partition, std::string_view query, std::string_view dataSourceId) {
  const Query parsed = parseQuery(query);
  const QueryResolver resolver(parsed);
  for (const QueryObject& object : resolver.objects()) addTable(partition, object.parts, dataSourceId);
}

void PartitionQueries::addTable(ItemId partition, const TAVDOMElement& binding) {
  std::vector<std::string> parts;
  for (const std::string_view part : {"DbSchemaName", "DbTableName"})
    if (const std::string_view name = binding.getFirstElementValue(part); !name.empty())
      parts.emplace_back(name);
  addTable(partition, parts, binding.getFirstElementValue("DataSourceID"));
}

void PartitionQueries::addTable(ItemId partition, const std::vector<std::string>& nameParts,
                                std::string_view dataSourceId) {
  for (const ViewIndex& view : views()) {
    if (const TAVTable* table = view.findTable(nameParts, dataSourceId))
      return references_.relate(RelationKind::reads, run_.details->itemOf(*table), partition);
  }
  std::string name;
  for (const std::string& part : nameParts) {
    if (!name.empty()) name += '.';
    name += part;
  }
  run_.details->addOpenName(partition, name, OpenNameState::beyond, "a table of the database");
}

}  // namespace tav
