#include "framework/dom/child_index.h"

#include <memory>

namespace tav {

void ChildIndex::Builder::add(const DomName& name, std::uint32_t child) {
  if (&name == last_) return;  // a long list is of one tag
  last_ = &name;
  Slot& slot = slots_[slotOf(slots_, name.hash, name.written)];
  if (slot.name) return;
  slot = {&name, child};
  if (++used_ * 2 <= slots_.size()) return;
  std::vector<Slot> larger(slots_.size() * 2);
  for (const Slot& s : slots_)
    if (s.name) larger[slotOf(larger, s.name->hash, s.name->written)] = s;
  slots_.swap(larger);
}

const ChildIndex* ChildIndex::Builder::finish(Arena& arena) const {
  auto* kept = static_cast<Slot*>(arena.allocate(slots_.size() * sizeof(Slot), alignof(Slot)));
  std::uninitialized_copy(slots_.begin(), slots_.end(), kept);
  void* place = arena.allocate(sizeof(ChildIndex), alignof(ChildIndex));
  return new (place) ChildIndex({kept, slots_.size()});
}

std::uint32_t ChildIndex::find(std::string_view tag) const noexcept {
  return slots_[slotOf(slots_, hashName(tag), tag)].child;
}

// The slot of a tag, or the free one where it belongs; never more than half of them are taken.
std::size_t ChildIndex::slotOf(std::span<const Slot> slots, std::uint32_t hash,
                               std::string_view tag) noexcept {
  std::size_t i = hash & (slots.size() - 1);
  while (slots[i].name && (slots[i].name->hash != hash || slots[i].name->written != tag))
    i = (i + 1) & (slots.size() - 1);
  return i;
}

}  // namespace tav
