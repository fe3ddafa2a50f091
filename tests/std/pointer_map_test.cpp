#include "framework/std/pointer_map.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

namespace {

/// Few addresses in every order, so that they stand in each other's way: at multiples of the size of the
/// table, which begin at the same place of it, and around its end.
TEST(PointerMap, HoldsWhatAnyMapHolds) {
  std::mt19937 random(1);
  const auto pick = [&random](std::uintptr_t count) { return std::uintptr_t{random()} % count; };
  tav::PointerMap<std::uint32_t> map;
  std::unordered_map<const void*, std::uint32_t> other;
  for (std::uint32_t step = 0; step < 200'000; ++step) {
    const std::uintptr_t number = pick(2) == 0 ? pick(64) : 64 * (1 + pick(40));
    const void* key = reinterpret_cast<const void*>((1 + number) * 16);
    if (pick(3) == 0) {
      map.erase(key);
      other.erase(key);
    } else {
      const auto [value, isNew] = map.tryEmplace(key, step);
      const auto [place, isOtherNew] = other.try_emplace(key, step);
      ASSERT_EQ(isNew, isOtherNew);
      ASSERT_EQ(*value, place->second);
    }
    const void* asked = reinterpret_cast<const void*>((1 + pick(64)) * 16);
    const std::uint32_t* found = map.find(asked);
    ASSERT_EQ(found != nullptr, other.contains(asked));
    if (found) {
      ASSERT_EQ(*found, other[asked]);
    }
  }
}

}  // namespace
