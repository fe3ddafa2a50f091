#pragma once

#include <map>
#include <nlohmann/json.hpp>

#include "tests/changes/changes.h"

namespace tav::test {

/// Changes of a tabular definition in JSON. A text in lines is one value.
class JsonChanges : public Changes {
 public:
  explicit JsonChanges(std::string_view document);

  [[nodiscard]] std::string at(std::size_t i) const override;
  [[nodiscard]] std::string path(Place place) const override { return nodes_[place].path; }
  [[nodiscard]] std::optional<Place> around(Place place) const override { return nodes_[place].around; }
  [[nodiscard]] std::string without(Place place) const override;
  [[nodiscard]] bool isWriting(Place /*place*/) const override { return false; }

 private:
  using Json = nlohmann::ordered_json;
  /// A value that is a member of an object or an element of an array.
  struct Node {
    std::optional<Place> around;
    std::string path;
    Json::json_pointer pointer;
  };
  using Owners = std::map<std::string, std::vector<Place>>;

  void findNodes();
  void addChangesOf(Place place, const Owners& owners);
  [[nodiscard]] std::optional<Place> nextOwner(Place place, const Owners& owners) const;
  [[nodiscard]] const Json& valueOf(Place place) const { return document_.at(nodes_[place].pointer); }

  Json document_;
  std::vector<Node> nodes_;
};

}  // namespace tav::test
