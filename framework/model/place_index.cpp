#include "framework/model/place_index.h"

#include <bit>

#include "framework/model/object.h"

namespace tav {

PlaceIndex::PlaceIndex(std::span<const Slot> slots, ClassId kind) : kind_(kind), counts_(slots.size() + 1) {
  for (std::size_t i = 1; i < counts_.size(); ++i) {
    const TAVObject* object = slots[i - 1].other;
    if (object && derives(object->classId(), kind)) {
      ++counts_[i];
      ++count_;
    }
    // Each entry hands its count to the one that covers it next, so one pass fills the tree.
    const std::size_t above = i + (i & (~i + 1));
    if (above < counts_.size()) counts_[above] += counts_[i];
  }
}

void PlaceIndex::append(const TAVObject& object) {
  const std::size_t at = counts_.size();
  std::uint32_t count = derives(object.classId(), kind_) ? 1 : 0;
  count_ += count;
  const std::size_t bottom = at & (at - 1);
  for (std::size_t i = at - 1; i > bottom; i &= i - 1) count += counts_[i];
  counts_.push_back(count);
}

void PlaceIndex::remove(std::uint32_t place, const TAVObject& object) noexcept {
  if (!derives(object.classId(), kind_)) return;
  --count_;
  for (std::size_t i = std::size_t{place} + 1; i < counts_.size(); i += i & (~i + 1)) --counts_[i];
}

std::uint32_t PlaceIndex::find(std::uint32_t index) const noexcept {
  std::size_t at = 0;
  for (std::size_t step = std::bit_floor(counts_.size() - 1); step > 0; step /= 2) {
    if (at + step >= counts_.size() || counts_[at + step] > index) continue;
    at += step;
    index -= counts_[at];
  }
  return static_cast<std::uint32_t>(at);  // the slot behind those that hold fewer
}

}  // namespace tav
