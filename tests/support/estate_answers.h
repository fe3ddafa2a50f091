#pragma once

// What an estate answers, from its rows and from the documents of its models, which have to be one.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "exports/estate_lineage.h"
#include "framework/serialization/model_reader.h"
#include "lineage/joined_search.h"

namespace tav::test {

/// The models of an estate as their documents have them; each must have one.
class EstateDocuments {
 public:
  explicit EstateDocuments(const std::string& estate);

  [[nodiscard]] const JoinedModels& joined() const { return *joined_; }
  /// What the lineage of a name is, or the message that there is none, in all forms it is told in.
  [[nodiscard]] std::string answer(const std::string& name, const LineageWalk& walk) const;
  /// The same of the rows of the estate.
  [[nodiscard]] std::string answerOfRows(const std::string& name, const LineageWalk& walk) const;

 private:
  struct Loaded {
    SavedModel saved;
    std::optional<LineageGraph> graph;
  };

  std::string estate_;
  std::deque<Loaded> loaded_;
  AskedModels asked_;
  std::vector<JoinedModels::Model> models_;
  std::optional<JoinedModels> joined_;
};

}  // namespace tav::test
