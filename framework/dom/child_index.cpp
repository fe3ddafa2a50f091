#include "framework/dom/child_index.h"

#include <algorithm>
#include <vector>

#include "framework/dom/names.h"

namespace tav {

const ChildIndex* ChildIndex::build(std::span<const TAVDOMElement> children, Arena& arena) {
  std::vector<Slot> slots(16, Slot{});
  std::size_t used = 0;
  std::string_view last;
  for (std::uint32_t i = 0; i < children.size(); ++i) {
    const std::string_view tag = children[i].getTagName();
    if (tag.data() == last.data()) continue;  // a long list is of one tag
    last = tag;
    const std::uint32_t hash = hashName(tag);
    Slot& slot = slots[slotOf(slots, hash, tag, children.data())];
    if (slot.child != kNone) continue;
    slot = {hash, i};
    if (++used * 2 <= slots.size()) continue;
    std::vector<Slot> larger(slots.size() * 2, Slot{});
    for (const Slot& s : slots)
      if (s.child != kNone)
        larger[slotOf(larger, s.hash, children[s.child].getTagName(), children.data())] = s;
    slots.swap(larger);
  }
  auto* kept = static_cast<Slot*>(arena.allocate(slots.size() * sizeof(Slot), alignof(Slot)));
  std::uninitialized_copy(slots.begin(), slots.end(), kept);
  void* place = arena.allocate(sizeof(ChildIndex), alignof(ChildIndex));
  return new (place) ChildIndex({kept, slots.size()});
}

const TAVDOMElement* ChildIndex::find(std::string_view tag, const TAVDOMElement* children) const noexcept {
  const Slot& slot = slots_[slotOf(slots_, hashName(tag), tag, children)];
  return slot.child == kNone ? nullptr : children + slot.child;
}

// The slot of a tag, or the free one where it belongs; never more than half of them are taken.
std::size_t ChildIndex::slotOf(std::span<const Slot> slots, std::uint32_t hash, std::string_view tag,
                               const TAVDOMElement* children) noexcept {
  std::size_t i = hash & (slots.size() - 1);
  while (slots[i].child != kNone && (slots[i].hash != hash || children[slots[i].child].getTagName() != tag))
    i = (i + 1) & (slots.size() - 1);
  return i;
}

}  // namespace tav
