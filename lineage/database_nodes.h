#pragma once

// The tables and columns of databases while a graph is built: one node for each, however it is named.

#include <string>
#include <string_view>
#include <unordered_map>

#include "framework/std/string.h"
#include "lineage/lineage_graph.h"

namespace tav {

/// Finds the node of a database's table or column, made when it is first asked for. Letter case does not tell
/// names apart in any script; the first one asked for gives the spelling.
class DatabaseNodes {
 public:
  explicit DatabaseNodes(LineageGraph& graph) : graph_(graph) {}

  /// The address that the tables of a connection have. Null stands for a table without a connection.
  std::uint32_t addressOfConnection(const TAVStoreConnection* connection);
  /// The same of a connection that the model does not have.
  std::uint32_t addressOfFacts(const ConnectionFacts& facts) {
    return addAddress(parseDatabaseAddress(facts));
  }

  /// The table `schema.name`; with an empty schema, that of the store's default schema. Where the store has
  /// no such rule, the schema is not known, and the table is none of those whose schema is.
  NodeId table(std::uint32_t address, std::string_view schema, std::string_view name);
  /// The table that a query calls `text`: up to four parts, the server in front.
  NodeId namedTable(std::uint32_t address, std::string_view text);
  /// What a definition links by its IDs out of the model at an address: a dimension, with an empty `cube`, or
  /// a measure group of a cube. kNoNode where no model is.
  NodeId linked(std::uint32_t address, std::string_view cube, std::string_view id);
  NodeId column(NodeId table, std::string_view name);
  /// The column that a query calls `text`: of the table in front of its last part, or, when there is none, of
  /// an unknown table that `query` reads.
  NodeId namedColumn(std::uint32_t address, std::string_view text, NodeId query);

 private:
  using Index = std::unordered_map<std::string, NodeId, TextHash, std::equal_to<>>;

  std::uint32_t addAddress(const DatabaseAddress& address);
  NodeId qualifiedTable(std::uint32_t address, std::span<const std::string> parts);

  /// What the graph's map makes of a schema of a database.
  struct Mapped {
    std::uint32_t address;
    std::string schema;
  };
  const Mapped& mapped(std::uint32_t address, std::string_view schema);

  std::uint32_t keepAddress(const DatabaseAddress& address);
  [[nodiscard]] const DatabaseAddress& addressAt(std::uint32_t number) const;
  /// The graph keeps copies of the texts.
  NodeId addNode(LineageNode node, std::uint32_t address, std::string_view schema, bool isLinked = false);
  [[nodiscard]] std::uint32_t addressOfNode(NodeId id) const;

  LineageGraph& graph_;
  std::unordered_map<const TAVStoreConnection*, std::uint32_t> connections_;
  std::unordered_map<std::string, std::uint32_t> addresses_;
  std::unordered_map<std::string, Mapped> mapped_;  // by address and schema
  Index tables_;                                    // by address, folded schema and name
  Index linked_;                                    // the same of what is linked
  Index columns_;                                   // by table or query, and folded name
};

}  // namespace tav
