#pragma once

#include <span>
#include <string>
#include <vector>

#include "lineage/differences.h"
#include "lineage/node_pairs.h"

namespace tav {

/// A change of what a node depends on, and what that means to others.
struct RelationChange {
  Change change;
  bool affects = false;  ///< whether what depends on the node is another one for it
};

/// Compares what the nodes of a pair depend on, in every way that the table of relations knows.
class RelationDiff {
 public:
  RelationDiff(const LineageGraph& before, const LineageGraph& after, const NodePairs& pairs);

  [[nodiscard]] std::vector<RelationChange> compare(NodeId old, NodeId now) const;

 private:
  /// What a node depends on in one way.
  struct Related {
    std::string source;  ///< tells it apart, the same text for both nodes of a pair
    std::string text;
    EdgeKind kind;
    NodeId from;
    std::size_t count;
  };
  /// One of the graphs, with the relations that its details have by what names others in them.
  struct Side {
    const LineageGraph* graph;
    bool isNew;
    std::vector<std::uint32_t> offsets;  // by node
    std::vector<std::uint32_t> relations;
  };
  /// What only one node of a pair depends on.
  struct Lone {
    std::vector<Related> lost;
    std::vector<Related> gained;
  };

  static Side makeSide(const LineageGraph& graph, bool isNew);
  [[nodiscard]] std::vector<Related> relatedOf(const Side& side, NodeId id) const;
  void addOfModel(const Side& side, NodeId id, std::vector<Related>& all) const;
  void addOfDetails(const Side& side, NodeId id, std::vector<Related>& all) const;
  [[nodiscard]] std::string keyOf(const Side& side, NodeId from) const;
  [[nodiscard]] bool isToldOf(const Side& side, const Related& related) const;
  [[nodiscard]] Lone loneOf(NodeId old, NodeId now) const;
  void addOfKind(std::span<const Related> lost, std::span<const Related> gained,
                 std::vector<RelationChange>& changes) const;
  [[nodiscard]] Change changeOf(const Related* before, const Related* after) const;
  [[nodiscard]] std::string shown(const Side& side, const Related& related) const;
  [[nodiscard]] bool showOwners(const Related& before, const Related& after, Change& change) const;

  const NodePairs& pairs_;
  Side before_;
  Side after_;
};

/// The kind and the qualified name of a node: "view column Days.Month".
std::string kindAndName(const LineageGraph& graph, NodeId id);

}  // namespace tav
