#include "reader/elements/partition_queries.h"

#include "framework/expression/query_resolver.h"
#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"

namespace tav {

namespace {

/// What feeds the rows of a query: the columns that it names for its result.
std::vector<QuerySource> resultSources(const Query& query, QueryResolver& resolver) {
  std::vector<QuerySource> all;
  if (query.main == kNoQuery) return all;
  for (const std::uint32_t block : query.queries[query.main].blocks) {
    for (const QueryColumn& column : query.blocks[block].columns) {
      if (column.name.empty()) continue;
      const std::vector<QuerySource> sources = resolver.sourcesOf(unquotedPart(column.name));
      all.insert(all.end(), sources.begin(), sources.end());
    }
  }
  return all;
}

}  // namespace

const TAVFeature* PartitionQueries::Shown::findColumn(std::string_view name) const {
  if (!table) return nullptr;
  const std::vector<TAVFeature*>& found = view->findFeatures(*table, name);
  return found.empty() ? nullptr : found.front();
}

std::vector<ViewIndex>& PartitionQueries::views() {
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
  QueryResolver resolver(parsed);
  std::vector<Shown> tables;
  for (const QueryObject& object : resolver.objects())
    tables.push_back(addTable(partition, object.parts, dataSourceId));
  resolver.setHasColumn([&](std::uint32_t object, const std::string& column) {
    return tables[object].findColumn(column) != nullptr;
  });
  const auto addColumns = [&](RelationKind kind, const std::vector<QuerySource>& sources) {
    for (const QuerySource& source : sources) {
      const bool isKnown = source.object != QuerySource::kUnknown;
      if (const TAVFeature* column = isKnown ? tables[source.object].findColumn(source.column) : nullptr) {
        references_.relate(kind, run_.details->itemOf(*column), partition);
        continue;
      }
      std::vector<std::string> parts;
      if (isKnown) parts = resolver.objects()[source.object].parts;
      parts.push_back(source.column);
      run_.details->addOpenName(partition, joinDottedName(parts), OpenNameState::beyond, kColumnOfDatabase);
    }
  };
  addColumns(RelationKind::reads, resultSources(parsed, resolver));
  addColumns(RelationKind::condition, resolver.conditionSources());
}

void PartitionQueries::addTable(ItemId partition, const TAVDOMElement& binding) {
  std::vector<std::string> parts;
  for (const std::string_view part : {"DbSchemaName", "DbTableName"})
    if (const std::string_view name = binding.getFirstElementValue(part); !name.empty())
      parts.emplace_back(name);
  addTable(partition, parts, binding.getFirstElementValue("DataSourceID"));
}

PartitionQueries::Shown PartitionQueries::addTable(ItemId partition,
                                                   const std::vector<std::string>& nameParts,
                                                   std::string_view dataSourceId) {
  const Shown shown = find(nameParts, dataSourceId);
  if (shown.table)
    references_.relate(RelationKind::reads, run_.details->itemOf(*shown.table), partition);
  else
    run_.details->addOpenName(partition, joinDottedName(nameParts), OpenNameState::beyond, kTableOfDatabase);
  return shown;
}

PartitionQueries::Shown PartitionQueries::find(const std::vector<std::string>& nameParts,
                                               std::string_view dataSourceId) {
  for (ViewIndex& view : views())
    if (const TAVTable* table = view.findTable(nameParts, dataSourceId)) return {&view, table};
  return {};
}

}  // namespace tav
