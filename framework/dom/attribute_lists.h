#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "framework/dom/arena.h"
#include "framework/dom/element.h"

namespace tav {

/// The attributes of elements in the arena of a document. Of a list that was among the last, the same copy is
/// given again: most bindings of a definition say the same type.
class AttributeLists {
 public:
  explicit AttributeLists(Arena& arena) : arena_(arena) {}

  /// The attributes kept as long as the arena. There is at least one; names and values are in the arena.
  std::span<const DomAttribute> keep(std::span<const DomAttribute> list) {
    std::span<const DomAttribute>& last = last_[slotOf(list.front())];
    if (std::equal(list.begin(), list.end(), last.begin(), last.end(), areOne)) return last;
    auto* place = static_cast<DomAttribute*>(arena_.allocate(list.size_bytes(), alignof(DomAttribute)));
    std::uninitialized_copy(list.begin(), list.end(), place);
    last = {place, list.size()};
    return last;
  }

 private:
  static constexpr std::size_t kSlots = 256;

  static bool areOne(const DomAttribute& a, const DomAttribute& b) noexcept {
    return a.name == b.name && a.value.data() == b.value.data() && a.value.size() == b.value.size();
  }
  static std::size_t slotOf(const DomAttribute& first) noexcept {
    const auto place = reinterpret_cast<std::uintptr_t>(first.value.data());
    return (place * std::uint64_t{0x9E3779B97F4A7C15} >> 32) % kSlots;
  }

  Arena& arena_;
  std::array<std::span<const DomAttribute>, kSlots> last_;
};

}  // namespace tav
