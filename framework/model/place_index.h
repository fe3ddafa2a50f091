#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "framework/model/slot.h"

namespace tav {

/// Finds the slot of the n-th object of one class and its subclasses among slots with holes, at a cost of the
/// logarithm of their number: a tree of partial counts, in which entry i counts as many slots up to i as the
/// lowest bit of i says. Removing an object changes a few counts and moves nothing.
class PlaceIndex {
 public:
  PlaceIndex(std::span<const Slot> slots, ClassId kind);

  [[nodiscard]] ClassId kind() const noexcept { return kind_; }
  [[nodiscard]] std::uint32_t count() const noexcept { return count_; }
  /// Takes the slot that was appended last.
  void append(const TAVObject& object);
  void remove(std::uint32_t place, const TAVObject& object) noexcept;
  /// The slot of object `index`, which is less than count().
  [[nodiscard]] std::uint32_t find(std::uint32_t index) const noexcept;

 private:
  ClassId kind_;
  std::uint32_t count_ = 0;
  std::vector<std::uint32_t> counts_;  // entry 0 is not used
};

}  // namespace tav
