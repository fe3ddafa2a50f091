#pragma once

// A graph of lineage as walks and answers see it: nodes, the edges between them, and what people are told of
// them, wherever that comes from.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "framework/details/detailed_model.h"
#include "framework/model/model.h"
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

/// Whether nodes of this kind take over a measure or attribute as it is (see WalkGraph::originalOf).
bool isOriginalsCopy(NodeKind kind) noexcept;

/// What a part of a model is recognised by. The holder of an attribute is its dimension, that of a measure
/// its cube; `part` is empty for dimension and cube themselves. Letter case does not count.
std::string modelPartKey(std::string_view model, std::string_view holder, std::string_view part);
/// The holder of what other definitions link by its ID: a dimension, with an empty `cube`, or a measure group
/// of a cube, each by its ID.
std::string linkedHolder(std::string_view cube, std::string_view id);
/// What models over a model recognise a part of it by: one of that model on this server.
std::string readPartKey(std::string_view partKey, std::string_view server);
/// All such keys of a part lie between these two, of all parts where the key is empty.
std::pair<std::string, std::string> readPartRange(std::string_view partKey);
/// The modelPartKey() in a key of that kind; empty for any other key.
std::string_view partKeyIn(std::string_view key) noexcept;

/// What something is called in its definition; the ID is the name where nothing else is said.
struct DefinedName {
  std::string name;
  std::string id;
};

/// A node as other models may read or link it.
struct ReadablePart {
  NodeKind kind;
  DefinedName own;
  DefinedName owner;  ///< of what it is a part of; empty where there is none
  DefinedName cube;   ///< the same
};
/// Whether other models may read or link nodes of this kind.
bool isReadable(NodeKind kind) noexcept;
/// What such a part of a model is recognised by: by its name, by its ID, or either.
std::vector<std::string> partKeys(std::string_view model, const ReadablePart& part);

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

/// Lineage may hold cycles, and edges from a node to itself.
///
/// A definition may hold a password in any of its texts. What the accessors give is masked and may be shown;
/// the few whose names begin with "raw" give the definition's own text, as far as it is known, for whoever
/// has to match it.
class WalkGraph {
 public:
  WalkGraph(const WalkGraph&) = delete;
  WalkGraph& operator=(const WalkGraph&) = delete;
  virtual ~WalkGraph() = default;

  [[nodiscard]] std::span<const LineageNode> nodes() const noexcept { return nodes_; }
  [[nodiscard]] const LineageNode& node(NodeId id) const noexcept { return nodes_[id]; }
  /// Ordered by `to`; those with the same `to` in the order of its expression.
  [[nodiscard]] std::span<const LineageEdge> edges() const noexcept { return edges_; }
  /// The edges that end in a node: what it comes from.
  [[nodiscard]] std::span<const LineageEdge> into(NodeId id) const noexcept;
  /// The places in edges() of those that start at a node: what depends on it.
  [[nodiscard]] std::span<const std::uint32_t> outOf(NodeId id) const noexcept;
  /// The nodes whose owner a node is, in order.
  [[nodiscard]] std::span<const NodeId> partsOf(NodeId id) const noexcept;
  /// The cube that a node belongs to, itself included; kNoNode outside cubes.
  [[nodiscard]] NodeId cubeOf(NodeId id) const noexcept;
  /// The node that a cube's measure or attribute is a copy of; itself when it is none.
  [[nodiscard]] NodeId originalOf(NodeId id) const;

  [[nodiscard]] virtual std::string modelName() const = 0;
  [[nodiscard]] virtual std::string name(NodeId id) const = 0;
  /// The place in the model, "/Cubes/Stays/Measure Groups/Stays/Nights", or behind the address of the
  /// database, "mssql://host:1433/MurmeltalDW/dbo/FactStay/Nights". Two nodes may have the same.
  [[nodiscard]] virtual std::string path(NodeId id) const = 0;
  [[nodiscard]] virtual std::string rawPath(NodeId id) const = 0;
  /// The name as expressions write it: "[Measures].[Nights]", "[Date].[Month]", "dbo.FactStay.Nights".
  [[nodiscard]] virtual std::string qualifiedName(NodeId id) const = 0;
  [[nodiscard]] virtual std::string rawQualifiedName(NodeId id) const = 0;
  /// Whether the qualified name means this node alone of all that its model has; null where only a search
  /// through the nodes can tell (see NodeNames).
  [[nodiscard]] virtual std::optional<bool> isNameUnique(NodeId id) const = 0;
  /// The text that computes a node: MDX, DAX, SQL or M. Empty when it has none.
  [[nodiscard]] virtual std::string expression(NodeId id) const = 0;
  /// The language of expression(): "mdx", "dax", "sql" or "m"; empty where that is.
  [[nodiscard]] virtual std::string_view language(NodeId id) const = 0;
  /// How a measure of a measure group is added up, "Sum"; empty for every other node.
  [[nodiscard]] virtual std::string_view aggregation(NodeId id) const = 0;
  /// The names in the node's expression that lead to no attribute or measure, in the order of the text, each
  /// with what is known of it. Without details nothing is, and what the model has not found counts as one
  /// that nothing has.
  [[nodiscard]] virtual std::vector<OpenNameText> openNames(NodeId id) const = 0;
  /// What the relation of an edge says beside its kind: the number of a key column, a language.
  [[nodiscard]] virtual std::string edgeText(const LineageEdge& edge) const = 0;
  /// The database of a table or column of a database; null for every other node.
  [[nodiscard]] virtual const DatabaseAddress* database(NodeId id) const noexcept = 0;
  /// The schema of a table of a database, as far as it is known.
  [[nodiscard]] std::string schema(NodeId id) const;
  [[nodiscard]] virtual std::string_view rawSchema(NodeId id) const noexcept = 0;
  /// Whether the definition hides a node from those who browse its cubes.
  [[nodiscard]] virtual bool isHidden(NodeId id) const = 0;
  /// Whether a node is one with nodes of other models: a table or column of a database whose server the model
  /// names.
  [[nodiscard]] virtual bool isShared(NodeId id) const = 0;
  /// What a shared node is recognised by in other graphs of the same kind.
  [[nodiscard]] virtual std::string sharedKey(NodeId id) const = 0;
  /// The name of the model that a shared node is a part of: a table or column that a model over another model
  /// reads, whose sharedKey() is a readPartKey(). Empty for every other node.
  [[nodiscard]] virtual std::string_view readModel(NodeId id) const = 0;
  /// The ID that the definition gives a node; its name where that says it all.
  [[nodiscard]] virtual std::string definitionId(NodeId id) const = 0;
  /// The partKeys() of a dimension, an attribute, a cube, a measure or its group. Empty for what no other
  /// model reads.
  [[nodiscard]] std::vector<std::string> partKeys(NodeId id) const;
  /// What could make an answer another one: a document without details, and what its import passed over. A
  /// sentence each, without its end; usually none.
  [[nodiscard]] virtual std::vector<std::string> notes() const = 0;

 protected:
  WalkGraph() = default;

  /// Puts the edges that go out of nodes, and the parts of nodes, in place. The edges stand in their order.
  void arrangeNodes();

  std::vector<LineageNode> nodes_;
  std::vector<LineageEdge> edges_;
  std::vector<std::uint32_t> inOffsets_;  // by node: where its edges begin in edges_

 private:
  [[nodiscard]] NodeId onlySourceOf(NodeId id) const;

  std::vector<std::uint32_t> outOffsets_;  // by node: where its places begin in out_
  std::vector<std::uint32_t> out_;
  std::vector<std::uint32_t> partOffsets_;
  std::vector<NodeId> parts_;
};

}  // namespace tav
