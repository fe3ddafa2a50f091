#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "framework/model/slot.h"

namespace tav {

/// The slots of a collection in insertion order. Most collections keep one object, whose slot stands in here:
/// only a second one takes memory of its own. References to slots hold until the next append().
class Slots {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] Slot* data() noexcept { return more_ ? more_.get() : &first_; }
  [[nodiscard]] const Slot* data() const noexcept { return more_ ? more_.get() : &first_; }
  [[nodiscard]] Slot& operator[](std::size_t place) noexcept { return data()[place]; }
  [[nodiscard]] const Slot& operator[](std::size_t place) const noexcept { return data()[place]; }
  [[nodiscard]] Slot* begin() noexcept { return data(); }
  [[nodiscard]] Slot* end() noexcept { return data() + size_; }
  [[nodiscard]] const Slot* begin() const noexcept { return data(); }
  [[nodiscard]] const Slot* end() const noexcept { return data() + size_; }

  /// Changes nothing when memory runs out.
  void append(Slot slot) {
    if (size_ == capacity_) grow();
    data()[size_++] = slot;
  }
  /// Forgets the slots from place `size` on.
  void truncate(std::size_t size) noexcept { size_ = static_cast<std::uint32_t>(size); }

 private:
  void grow() {
    auto more = std::make_unique_for_overwrite<Slot[]>(std::size_t{2} * capacity_);
    std::copy(begin(), end(), more.get());
    more_ = std::move(more);
    capacity_ *= 2;
  }

  std::unique_ptr<Slot[]> more_;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = 1;
  Slot first_;
};

struct Indexes;
struct TAV_API DeleteIndexes {
  void operator()(Indexes* indexes) const noexcept;
};

/// What a collection keeps once something has been added to it.
struct ManyData {
  Slots slots;
  std::unique_ptr<Indexes, DeleteIndexes> indexes;
  std::uint32_t live = 0;
  std::uint32_t front = 0;  ///< the first slot that is no hole
  std::uint8_t row = 0;
};

}  // namespace tav
