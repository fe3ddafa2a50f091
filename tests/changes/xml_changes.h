#pragma once

#include <map>

#include "tests/changes/changes.h"
#include "tests/support/element_spans.h"

namespace tav::test {

class XmlChanges : public Changes {
 public:
  explicit XmlChanges(std::string document);

  [[nodiscard]] std::string at(std::size_t i) const override;
  [[nodiscard]] std::string path(Place place) const override { return spans_[place].path; }
  [[nodiscard]] std::optional<Place> around(Place place) const override { return around_[place]; }
  [[nodiscard]] std::string without(Place place) const override;
  [[nodiscard]] bool isWriting(Place place) const override;

 private:
  /// Owners by what can be put below them: those of one kind, in their order.
  using Owners = std::map<std::string, std::vector<Place>>;

  void findSurroundings();
  void addChangesOf(Place place, const Owners& owners);
  [[nodiscard]] std::optional<Place> nextOwner(Place place, const Owners& owners) const;
  [[nodiscard]] bool isLeaf(Place place) const;
  [[nodiscard]] bool hasChild(Place owner, std::string_view kind) const;
  [[nodiscard]] std::string_view textOf(Place place) const;

  std::string document_;
  std::size_t elements_;
  std::vector<Span> spans_;  // of the elements, then of the attributes
  std::vector<std::optional<Place>> around_;
  std::vector<std::vector<Place>> children_;  // of elements
};

}  // namespace tav::test
