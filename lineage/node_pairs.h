#pragma once

// Which node of one graph is which node of another.

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// Pairs the nodes of models; those of databases are compared by name alone, through `sourceKey`.
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
  };
  /// The nodes that are not paired yet, by a key that has a text for each that can be.
  using Index = std::unordered_map<std::string, std::vector<NodeId>>;
  using Key = std::string (NodePairs::*)(const Side& side, NodeId id) const;

  /// The nodes whose owners are paired before their own turn comes.
  enum class Turn : std::uint8_t { alone, ownedWhole, part };
  static Turn turnOf(const LineageNode& node);

  [[nodiscard]] Index indexOf(const Side& side, Turn turn, Key key) const;
  void pairNames(Turn turn);
  /// How many pairs were found.
  std::size_t pairContents(Turn turn);
  void join(NodeId before, NodeId after);
  [[nodiscard]] std::string nameKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string contentKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string ownerKey(const Side& side, NodeId id) const;
  [[nodiscard]] std::string sourceKey(const Side& side, NodeId id) const;

  std::array<Side, 2> sides_;
};

}  // namespace tav
