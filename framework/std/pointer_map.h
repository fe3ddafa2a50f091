#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tav {

/// Values by the address of what they are of. The entries lie side by side: a look-up reads one place in
/// memory where a table of nodes reads two or three.
template <class Value> class PointerMap {
 public:
  /// The value of `key`, which is `value` if it had none; and whether it had none. Valid until the next
  /// change.
  std::pair<Value*, bool> tryEmplace(const void* key, const Value& value) {
    if ((count_ + 1) * 4 > entries_.size() * 3) grow();
    Entry& entry = entries_[placeOf(key)];
    const bool isNew = entry.key == nullptr;
    if (isNew) {
      entry = {key, value};
      ++count_;
    }
    return {&entry.value, isNew};
  }

  /// The value of `key`, or null. Valid until the next change.
  [[nodiscard]] const Value* find(const void* key) const {
    if (count_ == 0) return nullptr;
    const Entry& entry = entries_[placeOf(key)];
    return entry.key ? &entry.value : nullptr;
  }

  void erase(const void* key) {
    if (!find(key)) return;
    std::size_t gap = placeOf(key);
    entries_[gap] = {};
    --count_;
    // What stands behind may have been moved on from the gap.
    for (std::size_t at = next(gap); entries_[at].key; at = next(at)) {
      const std::size_t wanted = first(entries_[at].key);
      if (((at - wanted) & last()) < ((at - gap) & last())) continue;
      entries_[gap] = std::exchange(entries_[at], {});
      gap = at;
    }
  }

 private:
  struct Entry {
    const void* key = nullptr;  // null where there is none
    Value value{};
  };

  [[nodiscard]] std::size_t last() const noexcept { return entries_.size() - 1; }
  [[nodiscard]] std::size_t next(std::size_t at) const noexcept { return (at + 1) & last(); }
  /// Where the search for a key begins. Objects lie at multiples of 16, and side by side.
  [[nodiscard]] std::size_t first(const void* key) const noexcept {
    const auto number = (reinterpret_cast<std::uintptr_t>(key) >> 4) * std::uint64_t{0x9E3779B97F4A7C15};
    return static_cast<std::size_t>(number ^ (number >> 32)) & last();
  }
  /// Where the key stands, or could.
  [[nodiscard]] std::size_t placeOf(const void* key) const noexcept {
    std::size_t at = first(key);
    while (entries_[at].key && entries_[at].key != key) at = next(at);
    return at;
  }

  void grow() {
    std::vector<Entry> before(entries_.empty() ? 64 : entries_.size() * 2);
    before.swap(entries_);
    for (const Entry& entry : before)
      if (entry.key) entries_[placeOf(entry.key)] = entry;
  }

  std::vector<Entry> entries_;  // their count is a power of two
  std::size_t count_ = 0;
};

}  // namespace tav
