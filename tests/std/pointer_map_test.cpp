#include "framework/std/pointer_map.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <unordered_map>
#include <vector>

namespace {

/// Few addresses, so that each comes and goes often, and others stand around the gaps that it leaves.
TEST(PointerMap, HoldsWhatAnyMapHolds) {
  std::mt19937 random(1);
  const auto pick = [&random](std::size_t count) { return std::size_t{random()} % count; };
  const std::vector<std::array<std::byte, 16>> places(4096);
  tav::PointerMap<std::uint32_t> map;
  std::unordered_map<const void*, std::uint32_t> other;
  for (std::uint32_t step = 0; step < 200'000; ++step) {
    const std::size_t number = pick(2) == 0 ? pick(64) : 64 * (1 + pick(40));
    const void* key = &places[number];
    if (pick(3) == 0) {
      map.erase(key);
      other.erase(key);
    } else {
      const auto [value, isNew] = map.tryEmplace(key, step);
      const auto [place, isOtherNew] = other.try_emplace(key, step);
      ASSERT_EQ(isNew, isOtherNew);
      ASSERT_EQ(*value, place->second);
    }
    const void* asked = &places[pick(64)];
    const std::uint32_t* found = map.find(asked);
    ASSERT_EQ(found != nullptr, other.contains(asked));
    if (found) {
      ASSERT_EQ(*found, other[asked]);
    }
  }
}

}  // namespace
