// What the names of tables mean where they stand: common table expressions, tables that the statements fill,
// or objects of the database.

#include <algorithm>

#include "framework/expression/parser.h"
#include "framework/expression/query_resolver.h"
#include "framework/expression/query_words.h"
#include "framework/std/dotted_name.h"
#include "framework/std/string.h"

namespace tav {

namespace {

/// The parts of a table's name. BigQuery quotes names as a whole: `project.set.table`.
std::vector<std::string> tableParts(std::string_view name) {
  std::vector<std::string> parts = splitDottedName(name);
  const bool whole = parts.size() == 1 && name.starts_with('`');
  return whole ? splitDottedName(parts.front()) : parts;
}

}  // namespace

QueryResolver::QueryResolver(const Query& query)
    : query_(query),
      tables_(query.blocks.size()),
      byAlias_(query.blocks.size()),
      columns_(query.blocks.size()),
      hasColumns_(query.blocks.size()),
      firstStar_(query.blocks.size(), kNoQuery),
      expressions_(query.queries.size()),
      shared_(query.blocks.size()),
      maxSteps_(50'000 + 20 * query.source.size()) {
  addExpressions();
  for (std::uint32_t i = 0; i < query.blocks.size(); ++i) {
    const auto& columns = query.blocks[i].columns;
    const auto star =
        std::find_if(columns.begin(), columns.end(), [](const auto& column) { return column.star; });
    if (star != columns.end()) firstStar_[i] = static_cast<std::uint32_t>(star - columns.begin());
    for (const QueryReference& reference : query.blocks[i].shared)
      shared_[i][nameKey(reference.name)].push_back(&reference);
    addTables(i);
  }
  addObjects();
}

void QueryResolver::addExpressions() {
  for (std::uint32_t i = 0; i < query_.queries.size(); ++i) {
    const QueryUnion& current = query_.queries[i];
    for (const QueryExpression& expression : current.expressions)
      expressions_[i].try_emplace(nameKey(expression.name), Expressions{&expression});
    // A query stands behind the one around it.
    const std::uint32_t outer = current.parent == kNoQuery ? kNoQuery : scopes_[current.parent];
    scopes_.push_back(current.expressions.empty() ? outer : i);
  }
  for (const QueryExpression& filled : query_.temporaries)
    temporaries_[foldCase(splitDottedName(filled.name).back())].push_back(&filled);
}

void QueryResolver::addTables(std::uint32_t block) {
  for (const QueryTable& table : query_.blocks[block].tables) {
    Table& made = tables_[block].emplace_back();
    for (const std::string& part : tableParts(table.name)) made.parts.push_back(foldCase(part));
    made.alias = table.alias.empty() ? made.parts.back() : nameKey(table.alias);
    if (table.kind == QueryTable::Kind::table)
      made.expressions = findExpressions(query_.blocks[block].query, made);
    byAlias_[block].emplace(made.alias, static_cast<std::uint32_t>(tables_[block].size() - 1));
  }
}

/// What a table of `query` reads that is none of the database: a common table expression, or what the
/// statements put into a table that they made.
const QueryResolver::Expressions* QueryResolver::findExpressions(std::uint32_t query,
                                                                 const Table& table) const {
  const std::string& name = table.parts.back();
  if (table.parts.size() == 1) {
    query = scopes_[query];
    for (std::size_t depth = 0; query != kNoQuery && depth <= kMaxExpressionDepth; ++depth) {
      const auto found = expressions_[query].find(name);
      if (found != expressions_[query].end()) return &found->second;
      const std::uint32_t outer = query_.queries[query].parent;
      query = outer == kNoQuery ? kNoQuery : scopes_[outer];
    }
  } else if (!name.starts_with('#')) {
    return nullptr;
  }
  const auto made = temporaries_.find(name);
  return made == temporaries_.end() ? nullptr : &made->second;
}

void QueryResolver::addObjects() {
  struct Place {
    std::size_t begin;
    std::uint32_t block, table;
  };
  std::vector<Place> places;
  for (std::uint32_t b = 0; b < tables_.size(); ++b) {
    for (std::uint32_t t = 0; t < tables_[b].size(); ++t) {
      const QueryTable& table = query_.blocks[b].tables[t];
      // Functions of one name are the database's own; those of users stand in a schema. A table variable or a
      // temporary table is none of the database.
      const bool object = (table.kind == QueryTable::Kind::table && !tables_[b][t].expressions) ||
                          (table.kind == QueryTable::Kind::function && tables_[b][t].parts.size() > 1);
      const std::string& last = tables_[b][t].parts.back();
      if (object && !last.starts_with('@') && !last.starts_with('#')) places.push_back({table.begin, b, t});
    }
  }
  std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.begin < b.begin; });
  std::unordered_map<std::string, std::uint32_t> known;
  for (const Place& place : places) {
    Table& table = tables_[place.block][place.table];
    const auto [entry, isNew] =
        known.emplace(joinDottedName(table.parts), static_cast<std::uint32_t>(objects_.size()));
    if (isNew) objects_.push_back({tableParts(query_.blocks[place.block].tables[place.table].name)});
    table.object = entry->second;
  }
}

}  // namespace tav
