#pragma once

// Finding what people ask for in several models.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lineage/joined_graph.h"
#include "lineage/lineage_tree.h"
#include "lineage/node_search.h"

namespace tav {

/// What stands between the name of a model and that of something in it.
inline constexpr std::string_view kModelSeparator = ": ";

/// A question whose name may begin with that of a model.
struct ScopedName {
  std::optional<std::uint32_t> model;  ///< null for all models
  std::string_view name;               ///< of what is asked for in it
};
ScopedName splitModel(const JoinedGraph& graph, std::string_view name);

struct FoundStarts {
  std::vector<JoinedId> nodes;
  /// Messages about models in which the name may mean several things; they are not among the nodes.
  std::vector<std::string> ambiguous;
};

/// The nodes that `name` means, one in each model that has one: where it fits best of all models, as
/// findNodes tells. Behind the name of a model, "Shop: [Measures].[Sales]", in this model alone. Throws
/// Message::ambiguousName when it means several things in each of the models, and Message::unknownName or
/// Message::unknownInModels when it means nothing.
FoundStarts findStarts(const JoinedGraph& graph, std::string_view name, LineageDirection direction);

/// The names by which nodes are found again in either direction.
class JoinedNames {
 public:
  explicit JoinedNames(const JoinedGraph& graph);

  /// As NodeNames has it, behind the name of its model where models are named. A shared node goes by its
  /// path.
  [[nodiscard]] std::string nameOf(JoinedId id) const;

 private:
  const JoinedGraph& graph_;
  std::vector<NodeNames> names_;
};

}  // namespace tav
