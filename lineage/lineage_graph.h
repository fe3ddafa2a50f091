#pragma once

// The lineage of a model as one graph, which every export and every question about lineage reads. It goes
// beyond the model: to the tables and columns of the database behind the data source views, to what the
// details of the definition relate, and from a linked measure group to the measures that a cube lists because
// of it.

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/details/detailed_model.h"
#include "framework/model/model.h"
#include "lineage/address_map.h"
#include "lineage/database_address.h"

namespace tav {

using NodeKind = ObjectKind;
using EdgeKind = RelationKind;
inline constexpr std::size_t kNodeKindCount = kObjectKindCount;
inline constexpr std::size_t kEdgeKindCount = kRelationKindCount;

/// The name of a kind in exports, "databaseTable", and for people, "database table".
inline std::string_view nodeKindName(NodeKind kind) noexcept {
  return rowOf(kind).name;
}
inline std::string_view nodeKindLabel(NodeKind kind) noexcept {
  return rowOf(kind).label;
}
inline std::string_view edgeKindName(EdgeKind kind) noexcept {
  return rowOf(kind).name;
}
/// Whether nodes of this kind have others as their parts: tables, dimensions, cubes.
inline bool isClassifierKind(NodeKind kind) noexcept {
  return rowOf(kind).hasParts;
}
/// Whether nodes of this kind show others as they are: what cubes use, list and link.
inline bool isCopyKind(NodeKind kind) noexcept {
  return rowOf(kind).isCopy;
}
/// Whether nodes of this kind are measures, calculated ones and copies included, but not values of KPIs.
bool isMeasureKind(NodeKind kind) noexcept;

/// The place of a node in LineageGraph::nodes().
using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = 0xFFFFFFFF;
inline constexpr std::uint32_t kNoRelation = 0xFFFFFFFF;

struct LineageNode {
  NodeKind kind;
  /// What the node is a part of: the table of a column, the measure group of a measure, the cube of a measure
  /// group. kNoNode for what stands by itself.
  NodeId owner = kNoNode;
  /// The object of the model; null for a table or column of a database and for what only the details have.
  const TAVModelObject* object = nullptr;
  /// The name as the definition has it: to be matched, never to be shown (see LineageGraph::name).
  std::string_view rawName;
  /// What the details say of it; kNoItem when they say nothing.
  ItemId item = kNoItem;
};

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

/// A name in an expression that leads to nothing, passwords masked.
struct OpenNameText {
  std::string name;
  OpenNameState state;
  std::string note;  ///< what it is, or the nearest spelling; may be empty
};

/// `to` names `from`; values, where the kind gives any, flow the same way.
struct LineageEdge {
  NodeId from;
  NodeId to;
  EdgeKind kind;
  /// Whether the model does not have it: it stands in the details, or a cube lists a linked measure.
  bool foundByGraph = false;
  /// Whether it stands in the place of one that the model has, which leads to a dimension that the cube calls
  /// otherwise.
  bool replaces = false;
  /// The place in Details::relations(); kNoRelation for an edge that the model has.
  std::uint32_t relation = kNoRelation;
};

/// Built in one pass over a model, which must live longer and stay as it is. Lineage may hold cycles, and
/// edges from a node to itself. Nodes stand in the order of the model, those of databases behind them, and
/// the same model gives the same graph.
///
/// A definition may hold a password in any of its texts. What the accessors give is masked and may be shown;
/// the few whose names begin with "raw" give the definition's own text, for whoever has to match it.
class LineageGraph {
 public:
  /// Renumbers the model (see tav::Numbering). Databases are called as `map` has them.
  explicit LineageGraph(const DetailedModel& model);
  LineageGraph(const DetailedModel& model, const AddressMap& map);
  LineageGraph(const LineageGraph&) = delete;
  LineageGraph& operator=(const LineageGraph&) = delete;

  [[nodiscard]] const TAVModel& model() const noexcept { return model_; }
  /// What the definition says beyond the model; null when that is not known.
  [[nodiscard]] const Details* details() const noexcept { return details_; }
  [[nodiscard]] std::span<const LineageNode> nodes() const noexcept { return nodes_; }
  [[nodiscard]] const LineageNode& node(NodeId id) const noexcept { return nodes_[id]; }
  /// The node that an item of the details is told with. Several items may have one node.
  [[nodiscard]] NodeId nodeOf(ItemId item) const noexcept { return itemNodes_[item]; }
  /// Ordered by `to`; those with the same `to` in the order of its expression.
  [[nodiscard]] std::span<const LineageEdge> edges() const noexcept { return edges_; }
  /// The edges that end in a node: what it comes from.
  [[nodiscard]] std::span<const LineageEdge> into(NodeId id) const noexcept;
  /// The places in edges() of those that start at a node: what depends on it.
  [[nodiscard]] std::span<const std::uint32_t> outOf(NodeId id) const noexcept;
  /// The nodes whose owner a node is, in order.
  [[nodiscard]] std::span<const NodeId> partsOf(NodeId id) const noexcept;

  [[nodiscard]] std::string modelName() const;
  /// The data sources of the model, in its order.
  [[nodiscard]] std::vector<LineageConnection> connections() const;
  /// The database that a connection leads to.
  [[nodiscard]] DatabaseAddress addressOf(const TAVStoreConnection& connection) const;

  [[nodiscard]] std::string name(NodeId id) const;
  /// The place in the model, "/Cubes/Stays/Measure Groups/Stays/Nights", or behind the address of the
  /// database, "mssql://host:1433/MurmeltalDW/dbo/FactStay/Nights". Two nodes may have the same.
  [[nodiscard]] std::string path(NodeId id) const;
  [[nodiscard]] std::string rawPath(NodeId id) const;
  /// The name as expressions write it: "[Measures].[Nights]", "[Date].[Month]", "dbo.FactStay.Nights".
  [[nodiscard]] std::string qualifiedName(NodeId id) const;
  [[nodiscard]] std::string rawQualifiedName(NodeId id) const;
  /// The text that computes a node: MDX, DAX, SQL or M. Empty when it has none.
  [[nodiscard]] std::string expression(NodeId id) const;
  [[nodiscard]] std::string_view rawExpression(NodeId id) const;
  /// The language of expression(): "mdx", "dax", "sql" or "m"; empty where that is.
  [[nodiscard]] std::string_view language(NodeId id) const;
  /// How a measure of a measure group is added up, "Sum"; empty for every other node.
  [[nodiscard]] std::string_view aggregation(NodeId id) const;
  /// What the details set about a node, in their order: names as the definition has them, values masked.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> settings(NodeId id) const;
  /// The same as the details have them, not masked.
  [[nodiscard]] std::vector<const DetailSetting*> rawSettings(NodeId id) const;
  /// The names in the node's expression that lead to no attribute or measure, in the order of the text, each
  /// with what is known of it. Without details nothing is, and what the model has not found counts as one
  /// that nothing has.
  [[nodiscard]] std::vector<OpenNameText> openNames(NodeId id) const;
  /// What the relation of an edge says beside its kind: the number of a key column, a language.
  [[nodiscard]] std::string edgeText(const LineageEdge& edge) const;
  /// The names in the node's expression that lead to nothing. Without details of a multidimensional
  /// definition, those that the model could not resolve: some of them may mean something all the same.
  [[nodiscard]] std::vector<std::string> unresolved(NodeId id) const;
  /// What the definition says about a node for people. Empty when it says nothing.
  [[nodiscard]] std::string description(NodeId id) const;
  /// The name of the data type, and the type that it is of ("VARCHAR(50)" is a VARCHAR). Empty when a node
  /// has none.
  [[nodiscard]] std::string typeName(NodeId id) const;
  [[nodiscard]] std::string dataType(NodeId id) const;
  /// The package or folder that holds a table, dimension or the like; empty for every other node.
  [[nodiscard]] std::string packageName(NodeId id) const;
  /// Names and values of what else the definition notes of a node.
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> properties(NodeId id) const;
  /// The hierarchies of a dimension; empty for every other node.
  [[nodiscard]] std::vector<LineageHierarchy> hierarchies(NodeId id) const;
  /// The cube that a node belongs to, itself included; kNoNode outside cubes.
  [[nodiscard]] NodeId cubeOf(NodeId id) const noexcept;
  /// The database of a table or column of a database; null for every other node.
  [[nodiscard]] const DatabaseAddress* database(NodeId id) const noexcept;
  /// The schema of a table of a database, as far as it is known.
  [[nodiscard]] std::string schema(NodeId id) const;
  [[nodiscard]] std::string_view rawSchema(NodeId id) const noexcept;
  /// Whether the model was imported from a tabular definition.
  [[nodiscard]] bool isTabular() const noexcept { return tabular_; }

  /// Whether a node is a measure that counts rows, or a copy of one.
  [[nodiscard]] bool countsRows(NodeId id) const;
  /// The node that a cube's measure or attribute is a copy of; itself when it is none.
  [[nodiscard]] NodeId originalOf(NodeId id) const;
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

  [[nodiscard]] NodeId onlySourceOf(NodeId id) const;
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
  };

  const TAVModel& model_;
  const Details* details_;
  AddressMap map_;
  bool tabular_ = false;
  std::vector<LineageNode> nodes_;
  std::vector<LineageEdge> edges_;
  std::vector<std::uint32_t> inOffsets_;   // by node: where its edges begin in edges_
  std::vector<std::uint32_t> outOffsets_;  // by node: where its places begin in out_
  std::vector<std::uint32_t> out_;
  std::vector<std::uint32_t> partOffsets_;
  std::vector<NodeId> parts_;
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
