#pragma once

// Nodes of a model out of the rows of a database of models.

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "lineage/walk_graph.h"

namespace tav {

/// A row of the table "nodes", and its rows of "open_names".
struct StoredNode {
  std::int64_t id = 0;
  std::int64_t model = 0;
  std::int64_t owner = 0;  ///< 0 where it has none
  std::int64_t cube = 0;   ///< 0 outside cubes
  NodeKind kind{};
  std::string name;
  std::string qualifiedName;
  std::string path;
  std::string server;
  std::string database;
  std::string schema;
  std::string expression;
  std::string language;
  std::string aggregation;
  std::string meeting;       ///< empty where no other model has it
  std::string definitionId;  ///< empty where it is the name, or nobody asks
  bool hidden = false;
  bool unique = false;
  std::vector<OpenNameText> openNames;
};

/// A row of the table "edges".
struct StoredEdge {
  std::int64_t place = 0;  ///< among the edges of the database
  std::int64_t from = 0;
  std::int64_t to = 0;
  EdgeKind kind{};
  NodeKind toKind{};  ///< of the node that it leads to
  std::string text;
  bool foundByGraph = false;
  bool replaces = false;
};

/// A part of the graph of a model: some of its nodes, in their order, and the edges among them. The rows must
/// live longer. Passwords are masked in them, so that nothing raw is known.
class StoredGraph final : public WalkGraph {
 public:
  struct Part {
    std::string model;
    std::vector<std::string> notes;
    std::vector<const StoredNode*> nodes;  ///< ordered by id, with all their owners
    std::vector<const StoredEdge*> edges;  ///< ordered by `to` and place, between these nodes
  };
  explicit StoredGraph(Part part);

  /// The row of a node.
  [[nodiscard]] const StoredNode& row(NodeId id) const noexcept { return *rows_[id]; }
  /// The node of a row that is in the part.
  [[nodiscard]] NodeId nodeOf(std::int64_t id) const { return byId_.at(id); }

  [[nodiscard]] std::string modelName() const override { return model_; }
  [[nodiscard]] std::string name(NodeId id) const override { return row(id).name; }
  [[nodiscard]] std::string path(NodeId id) const override { return row(id).path; }
  [[nodiscard]] std::string rawPath(NodeId id) const override { return row(id).path; }
  [[nodiscard]] std::string qualifiedName(NodeId id) const override { return row(id).qualifiedName; }
  [[nodiscard]] std::string rawQualifiedName(NodeId id) const override { return row(id).qualifiedName; }
  [[nodiscard]] std::optional<bool> isNameUnique(NodeId id) const override { return row(id).unique; }
  [[nodiscard]] std::string expression(NodeId id) const override { return row(id).expression; }
  [[nodiscard]] std::string_view language(NodeId id) const override { return row(id).language; }
  [[nodiscard]] std::string_view aggregation(NodeId id) const override { return row(id).aggregation; }
  [[nodiscard]] std::vector<OpenNameText> openNames(NodeId id) const override { return row(id).openNames; }
  [[nodiscard]] std::string edgeText(const LineageEdge& edge) const override;
  [[nodiscard]] const DatabaseAddress* database(NodeId id) const noexcept override;
  [[nodiscard]] std::string_view rawSchema(NodeId id) const noexcept override { return row(id).schema; }
  [[nodiscard]] bool isHidden(NodeId id) const override { return row(id).hidden; }
  [[nodiscard]] bool isShared(NodeId id) const override { return !row(id).meeting.empty(); }
  [[nodiscard]] std::string sharedKey(NodeId id) const override { return row(id).meeting; }
  [[nodiscard]] std::string_view readModel(NodeId id) const override {
    return partKeyIn(row(id).meeting).empty() ? std::string_view() : std::string_view(row(id).database);
  }
  [[nodiscard]] std::string definitionId(NodeId id) const override {
    return row(id).definitionId.empty() ? row(id).name : row(id).definitionId;
  }
  [[nodiscard]] std::vector<std::string> notes() const override { return notes_; }

 private:
  void addNode(const StoredNode& row);
  void addEdges(const std::vector<const StoredEdge*>& edges);

  std::string model_;
  std::vector<std::string> notes_;
  std::vector<const StoredNode*> rows_;
  std::unordered_map<std::int64_t, NodeId> byId_;
  std::vector<std::uint32_t> address_;  // by node: its place in addresses_; kNoRelation for none
  std::deque<DatabaseAddress> addresses_;
  std::unordered_map<std::string, std::uint32_t> knownAddresses_;
  std::vector<std::string_view> edgeTexts_;
};

}  // namespace tav
