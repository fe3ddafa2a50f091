#include "framework/expression/query_resolver.h"

#include <algorithm>
#include <numeric>

#include "framework/expression/parser.h"
#include "framework/expression/query_words.h"
#include "framework/std/dotted_name.h"
#include "framework/std/empty_table.h"
#include "framework/std/string.h"

namespace tav {

// Results by name.

/// The first column of the name in a block's list, or none.
std::uint32_t QueryResolver::findPlace(std::uint32_t block, const std::string& name) {
  if (!hasColumns_[block]) {
    hasColumns_[block] = true;
    const auto& columns = query_.blocks[block].columns;
    for (std::uint32_t i = 0; i < columns.size(); ++i)
      if (!columns[i].name.empty()) columns_[block].emplace(nameKey(columns[i].name), i);
  }
  const auto found = columns_[block].find(name);
  return found == columns_[block].end() ? kNoQuery : found->second;
}

std::uint32_t QueryResolver::placeIn(const Names& names, const std::string& folded) {
  const auto [entry, isNew] = places_.try_emplace(&names);
  for (std::uint32_t i = 0; isNew && i < names.size(); ++i) entry->second.emplace(nameKey(names[i]), i);
  const auto found = entry->second.find(folded);
  return found == entry->second.end() ? kNoQuery : found->second;
}

/// Columns of a PIVOT that names its aggregates are made of two names, in the one or the other order.
bool QueryResolver::pivotHas(const QueryTable& table, const std::string& folded) {
  if (placeIn(table.columns, folded) != kNoQuery) return true;
  if (table.suffixes.empty()) return false;
  for (std::size_t i = folded.find('_'); i != folded.npos; i = folded.find('_', i + 1)) {
    ++steps_;
    const std::string front = folded.substr(0, i);
    const std::string back = folded.substr(i + 1);
    if (placeIn(table.columns, front) != kNoQuery && placeIn(table.suffixes, back) != kNoQuery) return true;
    if (placeIn(table.suffixes, front) != kNoQuery && placeIn(table.columns, back) != kNoQuery) return true;
  }
  return false;
}

const QueryColumn* QueryResolver::findColumn(std::string_view name) {
  if (query_.main == kNoQuery) return nullptr;
  const std::uint32_t block = query_.queries[query_.main].blocks.front();
  const std::uint32_t place = findPlace(block, foldCase(name));
  return place == kNoQuery ? nullptr : &query_.blocks[block].columns[place];
}

std::vector<QuerySource> QueryResolver::sourcesOf(std::string_view name) {
  start();
  if (query_.main != kNoQuery) addTarget({query_.main, std::string(name), kNoQuery});
  return follow();
}

std::vector<QuerySource> QueryResolver::conditionSources() {
  start();
  for (const QueryPart& condition : query_.conditions) addPart(condition);
  return follow();
}

// Following.

void QueryResolver::start() {
  parts_.clear();
  targets_.clear();
  emptyTable(seenParts_);
  emptyTable(seenTargets_);
  emptyTable(seenSources_);
  sources_.clear();
}

std::vector<QuerySource> QueryResolver::follow() {
  // Both lists grow while they are read.
  for (std::size_t part = 0, target = 0;
       isComplete() && (part < parts_.size() || target < targets_.size());) {
    if (part == parts_.size()) {
      visitTarget(Target(targets_[target++]));
      continue;
    }
    const QueryPart& current = *parts_[part++];
    for (const QueryReference& reference : current.references) visitReference(reference);
    for (const std::uint32_t query : current.queries)
      for (const std::uint32_t block : query_.queries[query].blocks)
        for (const QueryColumn& column : query_.blocks[block].columns) addPart(column);
  }
  return std::move(sources_);
}

void QueryResolver::addPart(const QueryPart& part) {
  ++steps_;
  if (seenParts_.insert(&part).second) parts_.push_back(&part);
}

void QueryResolver::addTarget(Target target) {
  ++steps_;
  std::string key = std::to_string(target.query);
  if (target.place == kNoQuery)
    key += " " + foldCase(target.name);
  else
    key += "#" + std::to_string(target.place);
  if (seenTargets_.insert(std::move(key)).second) targets_.push_back(std::move(target));
}

void QueryResolver::addSource(std::uint32_t object, const std::string& column) {
  if (seenSources_.insert(std::to_string(object) + " " + foldCase(column)).second)
    sources_.push_back({object, column});
}

void QueryResolver::visitTarget(const Target& target) {
  const auto& blocks = query_.queries[target.query].blocks;
  if (blocks.empty()) return;
  // The first SELECT names the columns of them all.
  const std::uint32_t first = blocks.front();
  std::uint32_t place = target.place;
  if (place == kNoQuery) place = findPlace(first, foldCase(target.name));
  const bool counted = place != kNoQuery && firstStar_[first] > place;
  for (const std::uint32_t block : blocks) {
    const auto& columns = query_.blocks[block].columns;
    if (counted && place < columns.size() && firstStar_[block] > place)
      addPart(columns[place]);
    else if (!target.name.empty())
      visitByName(block, target.name);
  }
}

void QueryResolver::visitByName(std::uint32_t block, const std::string& name) {
  const auto& columns = query_.blocks[block].columns;
  const std::uint32_t place = findPlace(block, foldCase(name));
  if (place != kNoQuery) return addPart(columns[place]);
  std::vector<std::uint32_t> candidates;
  for (std::size_t i = firstStar_[block]; i < columns.size() && candidates.size() < kMaxTables; ++i) {
    ++steps_;
    if (!columns[i].star || isHidden(columns[i], foldCase(name))) continue;
    if (columns[i].qualifier.empty()) {
      visitUnqualified(block, name);
      return;
    }
    std::vector<std::string> parts = splitDottedName(columns[i].qualifier);
    parts.push_back(name);
    const std::uint32_t table = findQualified(block, parts);
    if (table != kNoQuery) candidates.push_back(table);
  }
  choose(block, candidates, name);
}

/// A name that the block's tables do not know may belong to those of the blocks around it.
void QueryResolver::visitReference(const QueryReference& reference) {
  const std::vector<std::string> parts = splitDottedName(reference.name);
  if (reference.endTable != kNoQuery) {
    visitTables(reference.block, reference.firstTable, reference.endTable, parts.back());
    return;
  }
  std::uint32_t block = reference.block;
  for (std::size_t depth = 0; block != kNoQuery && depth <= kMaxExpressionDepth; ++depth) {
    ++steps_;
    const bool found =
        parts.size() == 1 ? visitUnqualified(block, parts.front()) : visitQualified(block, parts);
    if (found) return;
    block = query_.blocks[block].parent;
  }
  block = reference.block;
  for (std::size_t depth = 0; parts.size() > 1 && block != kNoQuery && depth <= kMaxExpressionDepth;
       ++depth) {
    ++steps_;
    if (visitField(block, parts)) return;
    block = query_.blocks[block].parent;
  }
}

bool QueryResolver::visitQualified(std::uint32_t block, const std::vector<std::string>& parts) {
  const std::uint32_t table = findQualified(block, parts);
  if (table == kNoQuery) return false;
  visitNamed(block, table, parts.back());
  return true;
}

/// A field of a column that is a record: table.column.field, or column.field where the column is certain.
bool QueryResolver::visitField(std::uint32_t block, const std::vector<std::string>& parts) {
  const auto [first, last] = byAlias_[block].equal_range(foldCase(parts.front()));
  if (first != last) {
    visitNamed(block, first->second, parts[1]);
    return true;
  }
  const std::string column = foldCase(parts.front());
  const std::size_t count = std::min(tables_[block].size(), kMaxTables);
  for (std::uint32_t table = 0; table < count; ++table) {
    ++steps_;
    if (has(block, table, column) != Has::yes) continue;
    visitTable(block, table, parts.front());
    return true;
  }
  return false;
}

/// The table that the parts before the last name, or none.
std::uint32_t QueryResolver::findQualified(std::uint32_t block, const std::vector<std::string>& parts) {
  const auto [first, last] = byAlias_[block].equal_range(foldCase(parts[parts.size() - 2]));
  std::uint32_t found = kNoQuery;
  for (auto entry = first; entry != last; ++entry) {
    ++steps_;
    const Table& table = tables_[block][entry->second];
    const std::size_t written = parts.size() - 1;
    // Of dbo.t.c the parts before the last are the end of the table's own name, or say more than it does.
    const std::size_t count = std::min(written, table.parts.size());
    bool same = written == 1 || query_.blocks[block].tables[entry->second].alias.empty();
    for (std::size_t i = 1; same && written > 1 && i <= count; ++i)
      same = foldCase(parts[written - i]) == table.parts[table.parts.size() - i];
    if (same) found = std::min(found, entry->second);
  }
  return found;
}

/// Follows a column of the table that the statement names for it.
void QueryResolver::visitNamed(std::uint32_t block, std::uint32_t table, const std::string& name) {
  const bool turned = query_.blocks[block].tables[table].kind == QueryTable::Kind::pivot;
  if (turned && has(block, table, foldCase(name)) == Has::no)
    visitUnqualified(block, name);  // it is not turned: a column of a table before it
  else
    visitTable(block, table, name);
}

bool QueryResolver::visitUnqualified(std::uint32_t block, const std::string& name) {
  const auto shared = shared_[block].find(foldCase(name));
  if (shared == shared_[block].end()) return visitTables(block, 0, kNoQuery, name);
  // The value of a column that USING makes of two is that of both.
  bool found = false;
  for (const QueryReference* side : shared->second)
    found = visitTables(block, side->firstTable, side->endTable, name) || found;
  return found;
}

/// Follows a column of some of the tables of a block.
bool QueryResolver::visitTables(std::uint32_t block, std::uint32_t first, std::uint32_t end,
                                const std::string& name) {
  const std::size_t count = std::min<std::size_t>(end, tables_[block].size());
  std::vector<std::uint32_t> some(count > first ? std::min(count - first, kMaxTables) : 0);
  std::iota(some.begin(), some.end(), first);
  return choose(block, some, name);
}

/// Follows a column of the one table that has it, or else may have it; false when none can.
bool QueryResolver::choose(std::uint32_t block, const std::vector<std::uint32_t>& tables,
                           const std::string& name) {
  const std::string folded = foldCase(name);
  std::vector<std::uint32_t> possible;
  for (const std::uint32_t table : tables) {
    ++steps_;
    const Has answer = has(block, table, folded);
    if (answer == Has::yes) {
      visitTable(block, table, name);
      return true;
    }
    if (answer == Has::perhaps) possible.push_back(table);
  }
  if (possible.empty()) return false;
  if (possible.size() == 1)
    visitTable(block, possible.front(), name);
  else
    addSource(QuerySource::kUnknown, name);
  return true;
}

bool QueryResolver::isHidden(const QueryColumn& star, const std::string& folded) {
  return !star.hidden.empty() && placeIn(star.hidden, folded) != kNoQuery;
}

/// A name for a column of all expressions together. A script may fill a table a thousand times, and read it
/// as often.
std::string QueryResolver::keyOfAll(const Expressions& expressions, const Names& renamed,
                                    const std::string& folded) {
  const void* first = renamed.empty() ? static_cast<const void*>(&expressions) : &renamed;
  return "@" + std::to_string(reinterpret_cast<std::uintptr_t>(first)) + " " + folded;
}

QueryResolver::Has QueryResolver::expressionsHave(const Expressions& expressions, const Names& renamed,
                                                  const std::string& folded) {
  const auto ask = [&](const QueryExpression& expression) {
    return queryHas(expression.query, renamed.empty() ? expression.columns : renamed, folded);
  };
  if (expressions.size() == 1) return ask(*expressions.front());
  const auto [entry, isNew] = known_.try_emplace(keyOfAll(expressions, renamed, folded), Has::no);
  if (!isNew) return entry->second;
  for (const QueryExpression* expression : expressions) {
    ++steps_;
    entry->second = std::max(entry->second, ask(*expression));
  }
  return entry->second;
}

QueryResolver::Has QueryResolver::queryHas(std::uint32_t query, const Names& names,
                                           const std::string& folded) {
  if (!names.empty()) return placeIn(names, folded) == kNoQuery ? Has::no : Has::yes;
  if (query == kNoQuery || query_.queries[query].blocks.empty()) return Has::no;
  const std::uint32_t block = query_.queries[query].blocks.front();
  if (findPlace(block, folded) != kNoQuery) return Has::yes;
  if (firstStar_[block] == kNoQuery) return Has::no;
  return isHidden(query_.blocks[block].columns[firstStar_[block]], folded) ? Has::no : Has::perhaps;
}

/// Whether a USING names the column of this table alone, which shows that it has one.
bool QueryResolver::isShared(std::uint32_t block, std::uint32_t table, const std::string& folded) {
  const auto found = shared_[block].find(folded);
  if (found == shared_[block].end()) return false;
  steps_ += found->second.size();
  return std::any_of(found->second.begin(), found->second.end(), [&](const QueryReference* side) {
    return side->firstTable == table && side->endTable == table + 1;
  });
}

QueryResolver::Has QueryResolver::has(std::uint32_t block, std::uint32_t table, const std::string& folded) {
  if (isShared(block, table, folded)) return Has::yes;
  const QueryTable& written = query_.blocks[block].tables[table];
  const Table& known = tables_[block][table];
  if (known.expressions) return expressionsHave(*known.expressions, written.columns, folded);
  switch (written.kind) {
    case QueryTable::Kind::query:
      return queryHas(written.query, written.columns, folded);
    case QueryTable::Kind::values:
      return placeIn(written.columns, folded) == kNoQuery ? Has::no : Has::yes;
    case QueryTable::Kind::pivot:
      return pivotHas(written, folded) ? Has::yes : Has::no;
    default:
      break;
  }
  if (known.object != QuerySource::kUnknown && hasColumn_ && hasColumn_(known.object, folded))
    return Has::yes;
  const bool renamed = written.kind == QueryTable::Kind::function && !written.columns.empty();
  if (renamed) return placeIn(written.columns, folded) == kNoQuery ? Has::no : Has::yes;
  return Has::perhaps;
}

void QueryResolver::visitExpressions(const Expressions& expressions, const Names& renamed,
                                     const std::string& name) {
  if (expressions.size() > 1 && !seenTargets_.insert(keyOfAll(expressions, renamed, foldCase(name))).second)
    return;
  for (const QueryExpression* expression : expressions)
    visitTableQuery(expression->query, renamed.empty() ? expression->columns : renamed, name);
}

void QueryResolver::visitTableQuery(std::uint32_t query, const Names& names, const std::string& name) {
  if (query == kNoQuery) return;
  if (names.empty()) return addTarget({query, name, kNoQuery});
  const std::uint32_t place = placeIn(names, foldCase(name));
  if (place != kNoQuery) addTarget({query, {}, place});
}

void QueryResolver::visitTable(std::uint32_t block, std::uint32_t table, const std::string& name) {
  const QueryTable& written = query_.blocks[block].tables[table];
  const Table& known = tables_[block][table];
  if (known.expressions) return visitExpressions(*known.expressions, written.columns, name);
  switch (written.kind) {
    case QueryTable::Kind::query:
      return visitTableQuery(written.query, written.columns, name);
    case QueryTable::Kind::values:
    case QueryTable::Kind::pivot:
      return addPart(written.inputs);
    default:
      if (known.object != QuerySource::kUnknown) addSource(known.object, name);
  }
}

}  // namespace tav
