#pragma once

#include <cstdint>

namespace tav::bench {

/// The same numbers for the same seed on every platform, which the distributions of the standard library do
/// not promise.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  /// The next 64 bits (splitmix64).
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  /// A number below `limit`, which is not 0.
  std::uint64_t below(std::uint64_t limit) { return next() % limit; }
  /// True `percent` times in a hundred.
  bool chance(unsigned percent) { return below(100) < percent; }
  /// One element of a container that can be indexed.
  template <class Container> const auto& pick(const Container& from) { return from[below(from.size())]; }

 private:
  std::uint64_t state_;
};

}  // namespace tav::bench
