#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "framework/model/slot.h"

namespace tav {

/// The slots of a collection in insertion order. Most collections keep one object, whose slot stands in here:
/// only a second one takes memory of its own. References to slots hold until the next append().
class Slots {
 public:
  Slots() = default;
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;
  ~Slots() {
    if (more_) std::allocator<Slot>().deallocate(more_, capacity_);
  }

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] Slot* data() noexcept { return more_ ? more_ : &first_; }
  [[nodiscard]] const Slot* data() const noexcept { return more_ ? more_ : &first_; }
  [[nodiscard]] Slot& operator[](std::size_t place) noexcept { return data()[place]; }
  [[nodiscard]] const Slot& operator[](std::size_t place) const noexcept { return data()[place]; }
  [[nodiscard]] Slot* begin() noexcept { return data(); }
  [[nodiscard]] Slot* end() noexcept { return data() + size_; }
  [[nodiscard]] const Slot* begin() const noexcept { return data(); }
  [[nodiscard]] const Slot* end() const noexcept { return data() + size_; }

  /// Changes nothing when memory runs out.
  void append(Slot slot) {
    if (size_ == capacity_) grow();
    std::construct_at(end(), slot);
    ++size_;
  }
  /// Forgets the slots from place `size` on.
  void truncate(std::size_t size) noexcept { size_ = static_cast<std::uint32_t>(size); }

 private:
  void grow() {
    // Only slots that are taken are written: the others cost no memory until they are.
    Slot* const more = std::allocator<Slot>().allocate(std::size_t{2} * capacity_);
    std::uninitialized_copy(begin(), end(), more);
    if (more_) std::allocator<Slot>().deallocate(more_, capacity_);
    more_ = more;
    capacity_ *= 2;
  }

  Slot* more_ = nullptr;
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
