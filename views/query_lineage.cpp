#include "views/query_lineage.h"

#include "framework/model/lineage_writer.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"

namespace tav {

QueryLineage::QueryLineage(const Query& query, QueryTarget& target)
    : query_(query), target_(target), resolver_(query) {
  resolver_.setHasColumn([this](std::uint32_t object, const std::string& column) {
    return target_.hasColumn(resolver_.objects()[object], column);
  });
}

void QueryLineage::write(TAVTable& table) {
  std::string objects;
  for (const QueryObject& object : resolver_.objects()) addLine(objects, joinDottedName(object.parts));
  table.querySources = objects;
  for (TAVFeature& feature : table.features)
    if (auto* column = as<TAVColumn>(&feature); column && column->expression.empty()) writeColumn(*column);
  if (!query_.conditions.empty()) writeCondition(target_.condition(table));
}

void QueryLineage::writeColumn(TAVColumn& column) {
  const std::vector<QuerySource> sources = resolver_.sourcesOf(column.physicalName);
  column.querySources = namesOf(sources);
  const QueryColumn* written = resolver_.findColumn(column.physicalName);
  if (written && !written->copy) column.expression = query_.textOf(*written);
  link(column, column.expression, sources);
}

void QueryLineage::writeCondition(TAVCondition& condition) {
  std::string parts = condition.expression.str();
  for (const QueryPart& part : query_.conditions) addLine(parts, query_.textOf(part));
  condition.expression = parts;
  const std::vector<QuerySource> sources = resolver_.conditionSources();
  condition.querySources = namesOf(sources);
  link(condition, condition.expression, sources);
}

/// Links those of the sources that the model shows; a map without any would say nothing.
void QueryLineage::link(TAVFeature& destination, std::string_view operation,
                        const std::vector<QuerySource>& sources) {
  TAVFeatureMap* map = nullptr;
  for (const QuerySource& source : sources) {
    if (source.object == QuerySource::kUnknown) continue;
    TAVFeature* column = target_.findColumn(resolver_.objects()[source.object], source.column, destination);
    if (!column) continue;
    if (!map) map = &addFeatureMap(classifierMapOf(*destination.classifier), destination, operation);
    addSource(*map, *column);
  }
}

TAVString QueryLineage::namesOf(const std::vector<QuerySource>& sources) const {
  std::string lines;
  for (const QuerySource& source : sources) {
    std::vector<std::string> parts;
    if (source.object != QuerySource::kUnknown) parts = resolver_.objects()[source.object].parts;
    parts.push_back(source.column);
    addLine(lines, joinDottedName(parts));
  }
  return lines;
}

void QueryLineage::report(const TAVTable& table, TAVExpressionAnalyzer& analyzer) const {
  if (query_.fault)
    analyzer.setParsingError(table.getPath(true), placeInText(query_.source, query_.fault.offset),
                             query_.fault.expected);
  if (!resolver_.isComplete())
    analyzer.setParsingError(table.getPath(true), placeInText(query_.source, 0),
                             "columns that are computed from fewer others");
}

const QueryObject* QueryLineage::plainTable() const {
  const bool simple = query_.main != kNoQuery && !query_.fault && query_.blocks.size() == 1 &&
                      query_.conditions.empty() && resolver_.objects().size() == 1;
  if (!simple) return nullptr;
  const QueryBlock& block = query_.blocks.front();
  const bool plain = block.tables.size() == 1 && block.tables.front().kind == QueryTable::Kind::table &&
                     block.tables.front().columns.empty() && block.columns.size() == 1 &&
                     block.columns.front().star;
  return plain ? &resolver_.objects().front() : nullptr;
}

}  // namespace tav
