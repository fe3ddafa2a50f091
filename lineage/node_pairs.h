#pragma once

// Which node of one graph is which node of another.

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Whether nodes of this kind are statements, which are called by their text.
bool isStatementKind(NodeKind kind) noexcept;

/// Pairs the nodes of models; those of databases are compared by name alone, through `sourceKey`. Nodes of
/// one owner are paired that have the same kind and name, then those that are made of the same, then those
/// that have most of their parts in common: a cube that was renamed keeps its measure groups. What then is
/// left is looked for at another owner.
class NodePairs {
 public:
  NodePairs(const LineageGraph& before, const LineageGraph& after);

  /// The partner of a node of the old graph in the new one, and the reverse; kNoNode when it has none.
  [[nodiscard]] NodeId afterOf(NodeId before) const noexcept { return sides_[0].partners[before]; }
  [[nodiscard]] NodeId beforeOf(NodeId after) const noexcept { return sides_[1].partners[after]; }

  /// What tells a source of either graph apart, the same text for both nodes of a pair.
  [[nodiscard]] std::string oldSourceKey(NodeId id) const { return sourceKey(sides_[0], id); }
  [[nodiscard]] std::string newSourceKey(NodeId id) const { return sourceKey(sides_[1], id); }

 private:
  struct Side {
    const LineageGraph* graph;
    std::vector<NodeId> partners;  // by node
    bool isNew;
    std::vector<std::vector<NodeId>> turns;  // nodes in groups, each behind those of its nodes' owners
  };
  /// The nodes that are not paired yet, by a key that has a text for each that can be.
  using Index = std::unordered_map<std::string, std::vector<NodeId>>;
  using Key = std::string (NodePairs::*)(const Side& side, NodeId id) const;

  /// Old nodes without a partner, by a key of each of their parts.
  using PartIndex = Index;
  struct Candidate {
    NodeId node = kNoNode;
    std::size_t common = 0;
  };

  static Side makeSide(const LineageGraph& graph, bool isNew);
  [[nodiscard]] Index indexOf(const Side& side, std::size_t turn, Key key) const;
  void pairNames(std::size_t turn);
  void pairSimilar(std::size_t turn);
  [[nodiscard]] PartIndex partsOfUnpaired(std::size_t turn) const;
  [[nodiscard]] std::vector<std::string> partKeys(const Side& side, NodeId id) const;
  [[nodiscard]] Candidate mostAlike(const PartIndex& parts, NodeId id) const;
  std::size_t pairOnly(std::size_t turn, Key key);
  void join(NodeId before, NodeId after);
  [[nodiscard]] std::string nameKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string plainNameKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string contentKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string movedKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string statementKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string madeOf(const Side& side, NodeId id) const;
  [[nodiscard]] std::string ownerKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string sourceKey(const Side& side, NodeId id) const;

  std::array<Side, 2> sides_;
};

}  // namespace tav
