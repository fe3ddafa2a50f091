#include "framework/java/java_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;
constexpr std::uint64_t kGigabyte = kMegabyte << 10;

struct Heap {
  const char* what;
  std::uint64_t input, machine, heap;
};

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

constexpr Heap kHeaps[] = {
    {"small input: a quarter of the machine", 0, 8 * kGigabyte, 2 * kGigabyte},
    {"64 MB and 14 times the input", 70 * kMegabyte, 2 * kGigabyte, (64 + 14 * 70) * kMegabyte},
    {"not all of the machine: 128 MB are left", 70 * kMegabyte, kGigabyte, (1024 - 128) * kMegabyte},
    {"half of a machine where 128 MB would be more", 70 * kMegabyte, 200 * kMegabyte, 100 * kMegabyte},
    {"small input in a small container", 0, 128 * kMegabyte, 64 * kMegabyte},
    {"an input of any size", kMost, 4 * kGigabyte, (4096 - 128) * kMegabyte},
    {"a machine of any size", 0, kMost, kMost / 4},
    {"a machine without memory", kMegabyte, 0, 0},
};

TEST(JavaMemory, IsWhatTheInputNeedsAndTheMachineHas) {
  for (const Heap& row : kHeaps) EXPECT_EQ(tav::javaHeapFor(row.input, row.machine), row.heap) << row.what;
}

}  // namespace
