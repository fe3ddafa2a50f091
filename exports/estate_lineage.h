#pragma once

// Questions about lineage to a database of models, answered from its rows: what an answer needs is read, and
// no more, so that the time goes with the answer and not with the estate.

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exports/stored_graph.h"
#include "exports/versions.h"
#include "lineage/joined_search.h"

namespace tav {

class EstateRows;

/// The models that are asked, and what answers call them.
struct AskedModels {
  std::vector<EstateModel> models;
  /// A name for each, which differ; none for the only model of an answer that names no models.
  std::vector<std::string> names;
};

/// An answer's part of the models, as one graph in which lineageTree() finds all that it would find in the
/// whole of them.
class EstateAnswer {
 public:
  explicit EstateAnswer(std::unique_ptr<EstateRows> rows);
  EstateAnswer(const EstateAnswer&) = delete;
  EstateAnswer& operator=(const EstateAnswer&) = delete;
  ~EstateAnswer();

  [[nodiscard]] const JoinedGraph& graph() const noexcept { return *joined_; }
  /// What the name means (see findStarts).
  [[nodiscard]] const FoundStarts& starts() const noexcept { return starts_; }

 private:
  friend class EstateLineage;

  void readMeant(const AskedModels& asked, std::string_view name, LineageDirection direction);
  std::vector<StoredGraph::Part> parts(const AskedModels& asked);
  void join(const AskedModels& asked);
  [[nodiscard]] std::int64_t rowOf(JoinedId id) const;
  [[nodiscard]] JoinedId idOf(std::int64_t row) const;

  std::unique_ptr<EstateRows> rows_;
  std::vector<std::unique_ptr<StoredGraph>> graphs_;
  std::unordered_map<std::int64_t, std::uint32_t> models_;  // by its number in the database: its place
  std::optional<JoinedGraph> joined_;
  FoundStarts starts_;
};

class EstateLineage {
 public:
  /// The models must be of this database. Throws when the file is something else.
  EstateLineage(const std::string& path, AskedModels asked);

  /// Throws as findStarts does.
  [[nodiscard]] std::unique_ptr<const EstateAnswer> ask(std::string_view name, const LineageWalk& walk) const;

 private:
  std::string path_;
  AskedModels asked_;
};

}  // namespace tav
