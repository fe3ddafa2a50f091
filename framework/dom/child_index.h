#pragma once

#include <span>

#include "framework/dom/arena.h"
#include "framework/dom/dom.h"

namespace tav {

/// Elements of so many children get an index; below, a walk is as fast.
inline constexpr std::size_t kIndexedChildren = 32;

/// The first child of each tag, so that looking for a tag costs the same however many tags the children have.
/// It lies in the arena.
class ChildIndex {
 public:
  static const ChildIndex* build(std::span<const TAVDOMElement> children, Arena& arena);

  /// The position of the first child with this tag; `children` are those that the index was built from.
  [[nodiscard]] const TAVDOMElement* find(std::string_view tag, const TAVDOMElement* children) const noexcept;

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  struct Slot {
    std::uint32_t hash;
    std::uint32_t child = kNone;
  };

  explicit ChildIndex(std::span<const Slot> slots) : slots_(slots) {}
  static std::size_t slotOf(std::span<const Slot> slots, std::uint32_t hash, std::string_view tag,
                            const TAVDOMElement* children) noexcept;

  std::span<const Slot> slots_;
};

}  // namespace tav
