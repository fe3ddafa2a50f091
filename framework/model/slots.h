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
    if (hasMore()) std::allocator<Slot>().deallocate(held_.more, capacity());
  }

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] Slot* data() noexcept { return hasMore() ? held_.more : &held_.first; }
  [[nodiscard]] const Slot* data() const noexcept { return hasMore() ? held_.more : &held_.first; }
  [[nodiscard]] Slot& operator[](std::size_t place) noexcept { return data()[place]; }
  [[nodiscard]] const Slot& operator[](std::size_t place) const noexcept { return data()[place]; }
  [[nodiscard]] Slot* begin() noexcept { return data(); }
  [[nodiscard]] Slot* end() noexcept { return data() + size_; }
  [[nodiscard]] const Slot* begin() const noexcept { return data(); }
  [[nodiscard]] const Slot* end() const noexcept { return data() + size_; }

  /// Changes nothing when memory runs out.
  void append(Slot slot) {
    if (size_ == capacity()) grow();
    std::construct_at(end(), slot);
    ++size_;
  }
  /// Forgets the slots from place `size` on.
  void truncate(std::size_t size) noexcept { size_ = static_cast<std::uint32_t>(size); }

 private:
  union Held {
    Slot first{};
    Slot* more;
  };

  [[nodiscard]] bool hasMore() const noexcept { return doublings_ > 0; }
  [[nodiscard]] std::size_t capacity() const noexcept { return std::size_t{1} << doublings_; }

  void grow() {
    // Only slots that are taken are written: the others cost no memory until they are.
    Slot* const more = std::allocator<Slot>().allocate(2 * capacity());
    std::uninitialized_copy(begin(), end(), more);
    if (hasMore()) std::allocator<Slot>().deallocate(held_.more, capacity());
    held_.more = more;
    ++doublings_;
  }

  Held held_;
  std::uint32_t size_ = 0;
  std::uint8_t doublings_ = 0;  // of the capacity, which begins with the one slot in here
};

struct Indexes;
struct TAV_API DeleteIndexes {
  void operator()(Indexes* indexes) const noexcept;
};

/// What a collection keeps once something has been added to it.
struct ManyData {
  [[no_unique_address]] Slots slots;  // what follows lies in its last bytes
  std::uint8_t row = 0;
  std::unique_ptr<Indexes, DeleteIndexes> indexes;
  std::uint32_t live = 0;
  std::uint32_t front = 0;  ///< the first slot that is no hole
};

}  // namespace tav
