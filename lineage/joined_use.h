#pragma once

// What of a model is used by others: what a database holds for several of them.

#include <vector>

#include "lineage/joined_graph.h"

namespace tav {

class JoinedUse {
 public:
  /// Linear in the nodes and edges of all models. The graph must live longer.
  explicit JoinedUse(const JoinedModels& graph);

  /// Whether another model uses a node, or what it takes over from a database as it is, by node. Empty where
  /// there is only one model.
  [[nodiscard]] std::vector<bool> usedBeside(std::uint32_t model) const;

 private:
  /// Two of the models that use a shared node, which are enough to tell whether another one does.
  struct Users {
    std::uint32_t first = JoinedGraph::kNoModel;
    std::uint32_t second = JoinedGraph::kNoModel;
  };

  [[nodiscard]] bool isUsedBeside(std::uint32_t model, NodeId node) const;

  const JoinedModels& graph_;
  std::vector<Users> users_;  // by JoinedId
};

}  // namespace tav
