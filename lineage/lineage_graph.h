#pragma once

// The lineage of a model as one graph, which every export and every question about lineage reads. It goes
// beyond the model: to the tables and columns of the database behind the data source views, to what the
// details of the definition relate, and from a linked measure group to the measures that a cube lists because
// of it.

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lineage/address_map.h"
#include "lineage/walk_graph.h"

namespace tav {

/// A data source, passwords masked.
struct LineageConnection {
  std::string name;
  std::string connectionString;
  DatabaseAddress address;
};

/// A hierarchy of a dimension, passwords masked.
struct LineageHierarchy {
  struct Level {
    std::string name;
    NodeId attribute;  ///< the attribute behind its key; kNoNode when there is none
  };
  std::string name;
  std::vector<Level> levels;
};

/// Built in one pass over a model, which must live longer and stay as it is. Nodes stand in the order of the
/// model, those of databases behind them, and the same model gives the same graph.
class LineageGraph final : public WalkGraph {
 public:
  /// Renumbers the model (see tav::Numbering). Databases are called as `map` has them.
  explicit LineageGraph(const DetailedModel& model);
  LineageGraph(const DetailedModel& model, const AddressMap& map);

  [[nodiscard]] const TAVModel& model() const noexcept { return model_; }
  /// What the definition says beyond the model; null when that is not known.
  [[nodiscard]] const Details* details() const noexcept { return details_; }
  /// The node that an item of the details is told with. Several items may have one node.
  [[nodiscard]] NodeId nodeOf(ItemId item) const noexcept { return itemNodes_[item]; }

  [[nodiscard]] std::string modelName() const override;
  /// The data sources of the model, in its order.
  [[nodiscard]] std::vector<LineageConnection> connections() const;
  /// The database that a connection leads to.
  [[nodiscard]] DatabaseAddress addressOf(const TAVStoreConnection& connection) const;

  [[nodiscard]] std::string name(NodeId id) const override;
  [[nodiscard]] std::string path(NodeId id) const override;
  [[nodiscard]] std::string rawPath(NodeId id) const override;
  [[nodiscard]] std::string qualifiedName(NodeId id) const override;
  [[nodiscard]] std::string rawQualifiedName(NodeId id) const override;
  [[nodiscard]] std::optional<bool> isNameUnique(NodeId) const override { return std::nullopt; }
  [[nodiscard]] std::string expression(NodeId id) const override;
  [[nodiscard]] std::string_view rawExpression(NodeId id) const;
  [[nodiscard]] std::string_view language(NodeId id) const override;
  [[nodiscard]] std::string_view aggregation(NodeId id) const override;
  /// What the details set about a node, in their order: names as the definition has them, values masked.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> settings(NodeId id) const;
  /// The same as the details have them, not masked.
  [[nodiscard]] std::vector<const DetailSetting*> rawSettings(NodeId id) const;
  [[nodiscard]] std::vector<OpenNameText> openNames(NodeId id) const override;
  [[nodiscard]] std::string edgeText(const LineageEdge& edge) const override;
  /// The names in the node's expression that lead to nothing. Without details of a multidimensional
  /// definition, those that the model could not resolve: some of them may mean something all the same.
  [[nodiscard]] std::vector<std::string> unresolved(NodeId id) const;
  /// What the definition says about a node for people. Empty when it says nothing.
  [[nodiscard]] std::string description(NodeId id) const;
  /// The name of the data type, and the type that it is of ("VARCHAR(50)" is a VARCHAR). Empty when the
  /// definition tells none.
  [[nodiscard]] std::string typeName(NodeId id) const;
  [[nodiscard]] std::string dataType(NodeId id) const;
  /// The package or folder that holds a table, dimension or the like; empty for every other node.
  [[nodiscard]] std::string packageName(NodeId id) const;
  /// Names and values of what else the definition notes of a node.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> properties(NodeId id) const;
  /// The hierarchies of a dimension; empty for every other node.
  [[nodiscard]] std::vector<LineageHierarchy> hierarchies(NodeId id) const;
  [[nodiscard]] const DatabaseAddress* database(NodeId id) const noexcept override;
  [[nodiscard]] std::string_view rawSchema(NodeId id) const noexcept override;
  [[nodiscard]] bool isHidden(NodeId id) const override;
  [[nodiscard]] bool isShared(NodeId id) const override;
  [[nodiscard]] std::string sharedKey(NodeId id) const override;
  [[nodiscard]] std::string_view readModel(NodeId id) const override;
  [[nodiscard]] std::string definitionId(NodeId id) const override;
  [[nodiscard]] std::vector<std::string> notes() const override;
  /// Whether a table of a database is a dimension, or a measure group of the cube that its schema names, of
  /// which the definition knows the IDs: it is linked from there.
  [[nodiscard]] bool isLinked(NodeId table) const noexcept {
    return table >= firstDatabaseNode_ && places_[table - firstDatabaseNode_].isLinked;
  }
  /// Whether the model was imported from a tabular definition.
  [[nodiscard]] bool isTabular() const noexcept { return tabular_; }

  /// Whether a node is a measure that counts rows, or a copy of one.
  [[nodiscard]] bool countsRows(NodeId id) const;
  /// The nodes that trace back to a database column: some path over edges that give values (not conditions,
  /// not members) leads there from a column of a database, a file or a service that the model names. A
  /// count of rows has no column by nature and is no gap; what changes every measure alike gives none of them
  /// a source. Everything that tells how far lineage reaches asks here.
  [[nodiscard]] std::vector<bool> tracedBack() const;

 private:
  friend class DatabaseNodes;
  friend class GraphBuilder;

  /// How a text of the definition goes into a longer one: masked, or as it is. Names are masked one by one,
  /// because a password ends where the name ends.
  using Show = std::string (*)(std::string_view text);

  [[nodiscard]] bool isCountOfTables(NodeId id) const;
  [[nodiscard]] std::string pathText(NodeId id, Show show) const;
  [[nodiscard]] std::string databasePath(NodeId id, Show show) const;
  [[nodiscard]] static std::string modelPath(const TAVModelObject& object, Show show);
  [[nodiscard]] std::string qualifiedText(NodeId id, Show show) const;
  [[nodiscard]] std::string partText(NodeId owner, const std::string& part, Show show) const;
  [[nodiscard]] std::string reportText(NodeId id, Show show) const;
  [[nodiscard]] std::string sqlName(NodeId id, Show show) const;
  [[nodiscard]] std::vector<std::string_view> rawUnresolved(NodeId id) const;

  /// What a node of a database has beside its name.
  struct DatabasePlace {
    std::uint32_t address;
    std::string_view schema;
    bool isLinked = false;  ///< whether schema and name are the IDs of what is linked: a cube and its group
  };

  const TAVModel& model_;
  const Details* details_;
  AddressMap map_;
  bool tabular_ = false;
  std::vector<NodeId> itemNodes_;               // by item of the details
  std::vector<std::uint32_t> settingOffsets_;   // by node: where its places begin in settings_
  std::vector<std::uint32_t> settings_;         // places in Details::settings()
  std::vector<std::uint32_t> openNameOffsets_;  // the same for names
  std::vector<std::uint32_t> openNames_;
  NodeId firstDatabaseNode_ = 0;
  std::vector<DatabasePlace> places_;  // of the nodes from firstDatabaseNode_ on
  std::deque<DatabaseAddress> addresses_;
  std::deque<std::string> texts_;  // names of databases' nodes
};

}  // namespace tav
