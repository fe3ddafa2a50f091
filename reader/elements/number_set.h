#pragma once

#include <cstdint>
#include <vector>

namespace tav {

/// Numbers of 63 bits, each once. They lie side by side, as sets of all relations of a definition are asked
/// more often than anything else of its details.
class NumberSet {
 public:
  /// Whether the number is new.
  bool insert(std::uint64_t number) {
    if ((count_ + 1) * 2 > places_.size()) grow();
    if (!place(number + 1)) return false;
    ++count_;
    return true;
  }

 private:
  /// Whether there was no such entry.
  bool place(std::uint64_t entry) {
    const std::size_t last = places_.size() - 1;
    for (std::size_t at = mixed(entry) & last;; at = (at + 1) & last) {
      if (places_[at] == entry) return false;
      if (places_[at] != 0) continue;
      places_[at] = entry;
      return true;
    }
  }

  void grow() {
    std::vector<std::uint64_t> before(places_.empty() ? 1024 : places_.size() * 2);
    before.swap(places_);
    for (const std::uint64_t entry : before)
      if (entry != 0) place(entry);
  }

  /// Spreads numbers that differ in few bits.
  static std::size_t mixed(std::uint64_t number) noexcept {
    number *= 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>(number ^ (number >> 32));
  }

  std::vector<std::uint64_t>
      places_;  // numbers plus one, 0 where there is none; their count is a power of two
  std::size_t count_ = 0;
};

}  // namespace tav
