#pragma once

// The graphs of several models as one: a table or column of a database is one node however many models read
// it, and what a model reads of another model is one with what it is there.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

/// A node of a joined graph; the NodeId itself where there is one model.
using JoinedId = std::uint32_t;

/// The graphs must live longer, and stay where they are.
class JoinedGraph {
 public:
  static constexpr JoinedId kNone = 0xFFFFFFFF;
  static constexpr std::uint32_t kNoModel = 0xFFFFFFFF;

  struct Model {
    std::string name;  ///< by which answers tell it from the others
    const WalkGraph* graph;
  };
  struct Place {
    std::uint32_t model;
    NodeId node;
  };

  /// One model, which nobody has to name.
  JoinedGraph(const WalkGraph& graph);  // NOLINT(google-explicit-constructor)
  /// Models whose names differ. Linear in their nodes.
  explicit JoinedGraph(std::vector<Model> models);
  JoinedGraph(const JoinedGraph&) = delete;
  JoinedGraph& operator=(const JoinedGraph&) = delete;

  [[nodiscard]] std::span<const Model> models() const noexcept { return models_; }
  /// Whether answers say which model something belongs to.
  [[nodiscard]] bool namesModels() const noexcept { return namesModels_; }
  /// All ids are below it. An id that no node has stands for one that is called by that of another model.
  [[nodiscard]] std::size_t size() const noexcept { return offsets_.back(); }

  [[nodiscard]] JoinedId idOf(std::uint32_t model, NodeId node) const noexcept {
    const JoinedId id = offsets_[model] + node;
    return first_.empty() ? id : first_[id];
  }
  /// Where a node is; of a shared one, in the first of its models.
  [[nodiscard]] Place placeOf(JoinedId id) const noexcept;
  /// The next of the ids that a shared node has, one for each model, itself the first; kNone behind the last.
  /// What a model over another one reads follows on what it is in that one.
  [[nodiscard]] JoinedId nextTwin(JoinedId id) const noexcept { return next_.empty() ? kNone : next_[id]; }
  [[nodiscard]] const WalkGraph& graph(std::uint32_t model) const noexcept { return *models_[model].graph; }
  /// The name of the model that a node belongs to; empty for a shared one, and where models are not named.
  [[nodiscard]] std::string_view modelName(JoinedId id) const;

 private:
  void joinShared();
  void joinReaders();
  [[nodiscard]] bool isReadBy(std::uint32_t model, JoinedId id) const noexcept;
  void lead(JoinedId id, JoinedId first);

  std::vector<Model> models_;
  bool namesModels_;
  std::vector<JoinedId> offsets_;  // by model: its first id; behind the last, how many there are
  std::vector<JoinedId> first_;    // by id: that of the same node in the first of its models
  std::vector<JoinedId> next_;     // by id: that of the same node in a later model
};

/// The same of whole models, for answers that look at all that they have.
class JoinedModels : public JoinedGraph {
 public:
  struct Model {
    std::string name;  ///< by which answers tell it from the others
    const LineageGraph* graph;
  };

  JoinedModels(const LineageGraph& graph);  // NOLINT(google-explicit-constructor)
  explicit JoinedModels(const std::vector<Model>& models);

  [[nodiscard]] const LineageGraph& whole(std::uint32_t model) const noexcept { return *graphs_[model]; }

 private:
  std::vector<const LineageGraph*> graphs_;
};

}  // namespace tav
