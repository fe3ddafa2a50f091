#pragma once

#include <cstdint>
#include <initializer_list>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/details/details.h"

namespace tav {

/// Entries that have one label, by their places where they come from.
struct EntryGroup {
  std::uint8_t kind;
  std::string_view text;
  std::vector<std::uint32_t> entries;
};

/// Puts entries of one label together, so that the label is written once. Who reads group after group still
/// meets all entries that concern one item in the order in which they were added: a label gets another group
/// where that needs it.
class OrderedGroups {
 public:
  /// Whether a group may hold several entries of one item.
  enum class Repeats : bool { apart, together };

  OrderedGroups(std::size_t items, Repeats repeats)
      : next_(items), step_(repeats == Repeats::apart ? 1 : 0) {}

  /// Texts are told apart by their places, as Details keeps each of them once.
  void add(std::uint8_t kind, std::string_view text, std::uint32_t entry,
           std::initializer_list<ItemId> items);
  [[nodiscard]] const std::vector<EntryGroup>& groups() const noexcept { return groups_; }

 private:
  using Label = std::pair<std::uint8_t, const char*>;
  struct LabelHash {
    std::size_t operator()(const Label& label) const noexcept {
      return std::hash<const void*>()(label.second) * 64 + label.first;
    }
  };

  std::vector<EntryGroup> groups_;
  std::unordered_map<Label, std::vector<std::uint32_t>, LabelHash> byLabel_;  // ascending
  std::vector<std::uint32_t> next_;  // by item: the first group that its next entry may be in
  std::uint32_t step_;
};

}  // namespace tav
