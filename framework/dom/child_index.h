#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "framework/dom/arena.h"
#include "framework/dom/dom_name.h"

namespace tav {

/// Elements of so many children get an index; below, a walk is as fast.
inline constexpr std::size_t kIndexedChildren = 32;

/// The first child of each tag, so that looking for a tag costs the same however many tags the children have.
/// It lies in the arena; what lies right in front of the children leads to it.
class ChildIndex {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  class Builder;
  /// What lies in front of indexed children.
  struct Front {
    const ChildIndex* index;
  };

  /// The index of children that are at least kIndexedChildren.
  static const ChildIndex& before(const void* children) noexcept {
    return *(static_cast<const Front*>(children) - 1)->index;
  }

  /// The place of the first child with this tag, or kNone.
  [[nodiscard]] std::uint32_t find(std::string_view tag) const noexcept;

 private:
  struct Slot {
    const DomName* name = nullptr;
    std::uint32_t child = kNone;
  };

  explicit ChildIndex(std::span<const Slot> slots) : slots_(slots) {}
  static std::size_t slotOf(std::span<const Slot> slots, std::uint32_t hash, std::string_view tag) noexcept;

  std::span<const Slot> slots_;
};

/// Makes an index of children that are added in order.
class ChildIndex::Builder {
 public:
  void add(const DomName& name, std::uint32_t child);
  const ChildIndex* finish(Arena& arena) const;

 private:
  std::vector<Slot> slots_{16};
  std::size_t used_ = 0;
  const DomName* last_ = nullptr;
};

}  // namespace tav
