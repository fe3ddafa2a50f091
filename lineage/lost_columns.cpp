#include "lineage/lost_columns.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

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
  const TAVStoreConnection* connection = as<TAVTable>(graph.node(query).object)->storeConnections.first();
  return connection ? parseDatabaseAddress(factsOf(*connection)).server : std::string();
}

}  // namespace

std::string lostReason(const LineageGraph& graph, NodeId id) {
  const std::vector<NodeId> ends = endsOf(graph, id);
  const auto entered = [&](NodeId end) { return isEntered(graph, end); };
  if (!ends.empty() && std::all_of(ends.begin(), ends.end(), entered))
    return "its data is entered in the definition";
  for (const NodeId end : ends) {
    if (const DatabaseAddress* address = graph.database(end); address && !address->named)
      return "it comes from a source that the definition does not name";
    if (!tableOf(graph, end) || entered(end)) continue;
    const std::string read = readBy(graph, graph.node(end).owner);
    if (!read.empty()) return "the query that computes it reads " + read;
  }
  return "its sources do not reach a column";
}

}  // namespace tav
