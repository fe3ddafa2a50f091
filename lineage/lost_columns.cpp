#include "lineage/lost_columns.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "framework/std/mask.h"
#include "framework/std/text.h"

namespace tav {
namespace {

/// More of the way back of one node is not worth its while: what it ends in is told for each node again.
constexpr std::size_t kMostNodes = 256;

/// The nodes from which no value leads further back, in the order in which the way comes to them.
std::vector<NodeId> endsOf(const LineageGraph& graph, NodeId id) {
  std::vector<NodeId> ends;
  std::vector<NodeId> waiting{id};
  std::unordered_set<NodeId> seen{id};
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    bool isEnd = true;
    for (const LineageEdge& edge : graph.into(waiting[next])) {
      if (!givesValue(edge.kind)) continue;
      isEnd = false;
      if (seen.size() >= kMostNodes) break;
      if (seen.insert(edge.from).second) waiting.push_back(edge.from);
    }
    if (isEnd) ends.push_back(waiting[next]);
  }
  return ends;
}

const TAVTable* tableOf(const LineageGraph& graph, NodeId column) {
  const NodeId owner = graph.node(column).owner;
  return owner == kNoNode ? nullptr : as<TAVTable>(graph.node(owner).object);
}

bool isEntered(const LineageGraph& graph, NodeId column) {
  const TAVTable* table = tableOf(graph, column);
  const TAVStoreConnection* connection = table ? table->storeConnections.first() : nullptr;
  return connection && factsOf(*connection).kind == kInlineKind;
}

/// The tables of databases, and files, that a query reads.
std::vector<NodeId> tablesReadBy(const LineageGraph& graph, NodeId query) {
  std::vector<NodeId> tables = endsOf(graph, query);
  std::erase_if(tables, [&](NodeId id) { return graph.node(id).kind != NodeKind::databaseTable; });
  return tables;
}

std::string describe(const LineageGraph& graph, NodeId table) {
  const DatabaseAddress& address = *graph.database(table);
  if (!address.named) return "a source that the definition does not name";
  if (address.naming != TableNaming::path) return "the table " + graph.path(table);
  std::string name = catalogueName(address, graph.schema(table), graph.name(table));
  const bool isFolder = name == "*" || name.ends_with("/*");
  if (isFolder) name.resize(name.size() - std::min<std::size_t>(name.size(), 2));
  if (address.server != "file")
    name = address.server + (name.empty() || name.starts_with("/") ? "" : "/") + name;
  if (isFolder) return "files of the folder " + name;
  return (address.server.starts_with("http") ? "the web page " : "the file ") + name;
}

/// What a query reads, or what it is connected to where its tables are not known.
std::string readBy(const LineageGraph& graph, NodeId query) {
  const std::vector<NodeId> tables = tablesReadBy(graph, query);
  if (tables.size() > 1)
    return describe(graph, tables.front()) + " and " + std::to_string(tables.size() - 1) + " more";
  if (tables.size() == 1) return describe(graph, tables.front());
  for (const LineageEdge& edge : graph.into(query))
    if (edge.kind == EdgeKind::mines) return "the mining model " + graph.name(edge.from);
  const TAVStoreConnection* connection = as<TAVTable>(graph.node(query).object)->storeConnections.first();
  return connection ? graph.addressOf(*connection).server : std::string();
}

/// The expression of a table that DAX computes; empty for every other one.
std::string_view tableExpression(const LineageGraph& graph, NodeId table) {
  if (!graph.isTabular() || table == kNoNode || graph.node(table).kind != NodeKind::dimension) return {};
  for (const TAVPropertyValue& property : graph.node(table).object->propertyValues)
    if (const TAVPropertyType* type = property.propertyType.get(); type && type->getName() == "expression")
      return property.value;
  return {};
}

/// The beginning of an expression, on one line.
std::string shownExpression(std::string_view text) {
  constexpr std::size_t kMostShown = 60;
  std::string shown;
  for (const char c : text) {
    const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (!isBlank)
      shown += c;
    else if (!shown.empty() && !shown.ends_with(' '))
      shown += ' ';
    if (shown.size() > kMostShown) break;
  }
  if (shown.ends_with(' ')) shown.pop_back();
  if (shown.size() <= kMostShown) return maskPasswords(shown);
  return maskPasswords(beginningOf(shown, kMostShown)) + " ...";
}

/// Of a column of a named query that reads nothing: what stands in the query for it.
std::string constantReason(const LineageGraph& graph, NodeId end) {
  const NodeId table = graph.node(end).owner;
  const std::string_view text = graph.rawExpression(end);
  if (text.empty() || table == kNoNode || graph.node(table).kind != NodeKind::namedQuery) return {};
  if (graph.language(end) != "sql") return {};
  return "it ends in a column that the named query " + graph.name(table) +
         " gives without a source: " + shownExpression(text);
}

/// What one end of the way back says; empty where it says nothing.
std::string endReason(const LineageGraph& graph, NodeId end) {
  if (const DatabaseAddress* address = graph.database(end); address && !address->named)
    return "it comes from a source that the definition does not name";
  if (std::string reason = constantReason(graph, end); !reason.empty()) return reason;
  if (std::string reason = calculatedTableReason(graph, end); !reason.empty()) return reason;
  if (!tableOf(graph, end) || isEntered(graph, end)) return {};
  const std::string read = readBy(graph, graph.node(end).owner);
  return read.empty() ? std::string() : "the query that computes it reads " + read;
}

}  // namespace

std::string calculatedTableReason(const LineageGraph& graph, NodeId id) {
  const NodeId table = graph.node(id).owner;
  const std::string_view text = tableExpression(graph, table);
  if (text.empty()) return {};
  return "it ends in the calculated table " + graph.name(table) +
         ", which reads no column: " + shownExpression(text);
}

std::string lostReason(const LineageGraph& graph, NodeId id) {
  const std::vector<NodeId> ends = endsOf(graph, id);
  const auto entered = [&](NodeId end) { return isEntered(graph, end); };
  if (!ends.empty() && std::all_of(ends.begin(), ends.end(), entered))
    return "its data is entered in the definition";
  for (const NodeId end : ends)
    if (std::string reason = endReason(graph, end); !reason.empty()) return reason;
  return "its sources do not reach a column";
}

}  // namespace tav
