#pragma once

// The rows of a database of models that an answer needs, read as they are asked for.

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exports/sqlite_database.h"
#include "exports/stored_graph.h"
#include "exports/versions.h"
#include "lineage/lineage_tree.h"

namespace tav {

class EstateRows {
 public:
  /// Of these models alone. Throws when the file is no such database.
  EstateRows(const std::string& path, const std::vector<EstateModel>& models);

  /// Reads what may be called so: the nodes of that last part, with what tells them from each other.
  void readNamed(std::string_view name);
  /// Reads the nodes whose paths end so, whose names hold a text, or are the nearest to it in spelling. Looks
  /// at all nodes.
  void readEndingIn(std::string_view path);
  void readHolding(std::string_view name);
  void readNearest(std::string_view name);
  /// Reads where a walk from these nodes leads.
  void readWalk(std::span<const std::int64_t> starts, LineageWalk walk);

  /// Throws unless what was read makes a graph: every node has its owner, no node is in itself, and edges
  /// stay within a model. A damaged database may say otherwise.
  void requireSound() const;

  [[nodiscard]] const std::unordered_map<std::int64_t, StoredNode>& nodes() const noexcept { return nodes_; }
  /// Those between nodes that are not all read are among them.
  [[nodiscard]] const std::unordered_map<std::int64_t, StoredEdge>& edges() const noexcept { return edges_; }
  /// The notes of all answers about a model.
  [[nodiscard]] const std::vector<std::string>& notesOf(std::int64_t model) { return notes_[model]; }

 private:
  /// A statement that gives rows of "nodes".
  using Ids = std::vector<std::int64_t>;

  Ids readNodes(SqliteStatement& statement);
  const StoredNode* addNode(const SqliteStatement& row);
  void readOpenNames(StoredNode& node);
  /// Null for a node of a model that is not asked.
  const StoredNode* node(std::int64_t id);
  Ids partsOf(std::int64_t id);
  Ids twinsOf(const StoredNode& node);
  Ids readersOf(std::string_view partKey);
  Ids modelParts(const StoredNode& reader, const std::string& partKey);
  std::vector<std::string> partKeysOf(const StoredNode& node);
  void readDefinitionId(StoredNode& node);
  const std::unordered_multimap<std::string, std::int64_t>& definitionIdsOf(std::int64_t model);
  /// The edges into a node, or out of it, in their order.
  std::vector<const StoredEdge*> edgesAt(std::int64_t id, LineageDirection direction);
  const StoredEdge* addEdge(const SqliteStatement& row);

  void readNotes();
  void readCandidates(const Ids& found);
  void readNameless(const Ids& found);
  void readOwners();
  void readOriginals();
  void readPerspectives();
  void visit(std::int64_t id, std::uint32_t distance);
  void expand(std::int64_t id, std::uint32_t distance, const LineageWalk& walk);

  SqliteDatabase database_;
  std::unordered_map<std::int64_t, std::string> models_;  // their names
  std::unordered_multimap<std::string, std::int64_t> modelsByName_;
  SqliteStatement byId_;
  SqliteStatement byName_;
  SqliteStatement byOwner_;
  SqliteStatement byMeeting_;
  SqliteStatement byPart_;
  SqliteStatement byModelAndName_;
  SqliteStatement edgesInto_;
  SqliteStatement edgesOutOf_;
  SqliteStatement openNames_;
  SqliteStatement definitionId_;
  std::unordered_map<std::int64_t, std::vector<std::string>> notes_;  // by model
  /// The nodes of a model by their IDs in its definition, folded, of the models asked for.
  std::unordered_map<std::int64_t, std::unordered_multimap<std::string, std::int64_t>> definitionIds_;
  std::unordered_map<std::int64_t, StoredNode> nodes_;
  std::unordered_map<std::int64_t, StoredEdge> edges_;
  std::unordered_map<std::int64_t, std::uint32_t> distances_;  // of the nodes of a walk from its starts
  Ids queue_;
  bool readsModels_;  // whether some model is over another one
};

}  // namespace tav
