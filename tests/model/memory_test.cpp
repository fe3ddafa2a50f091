#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <utility>

#include "framework/model/model.h"

// Memory runs out at every allocation of an operation in turn. It is then done or not done, at both ends.

namespace {

/// How many allocations succeed before one fails; none does while it is negative.
long left = -1;

void* allocated(std::size_t size) {
  if (left == 0) {
    left = -1;
    throw std::bad_alloc();
  }
  if (left > 0) --left;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;  // NOLINT(cppcoreguidelines-*)
  throw std::bad_alloc();
}

void* allocatedOrNull(std::size_t size) noexcept {
  try {
    return allocated(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// Whether `run` got all the memory that it asked for, if the allocation after `before` others fails.
template <class F> bool succeeds(long before, F run) {
  left = before;
  try {
    run();
    return std::exchange(left, -1) >= 0;
  } catch (const std::bad_alloc&) {
    left = -1;
    return false;
  }
}

template <class T> int countOf(const T& objects) {
  int count = 0;
  for ([[maybe_unused]] const auto& object : objects) ++count;
  return count;
}

TEST(Memory, AReferenceIsMadeAtBothEndsOrAtNone) {
  auto dimension = tav::make<TAVDimension>("Date");
  auto& month = dimension->addFeature(tav::make<TAVDimensionAttribute>("Month"));
  bool linked = false;
  for (long before = 0; !linked; ++before) {
    ASSERT_LT(before, 100);
    auto map = tav::make<TAVFeatureMap>("map");
    linked = succeeds(before, [&] { map->addSourceFeature(month); });
    EXPECT_EQ(countOf(map->sourceFeatures), linked ? 1 : 0) << before;
    EXPECT_EQ(countOf(month.sourceOf), linked ? 1 : 0) << before;
  }
}

TEST(Memory, APartIsAddedWithItsNameOrNotAtAll) {
  bool added = false;
  for (long before = 0; !added; ++before) {
    ASSERT_LT(before, 1000);
    auto folder = tav::make<TAVDesignPackage>("Cubes");
    for (int i = 0; i < 40; ++i) folder->addNamespaceElement(tav::make<TAVCube>("Cube " + std::to_string(i)));
    ASSERT_EQ(folder->getChildPackage("none"), nullptr);  // makes the index of names
    added = succeeds(before, [&] { folder->addNamespaceElement(tav::make<TAVDesignPackage>("New")); });
    EXPECT_EQ(folder->getChildPackageCount(), added ? 1 : 0) << before;
    EXPECT_EQ(folder->getChildPackage("New") != nullptr, added) << before;
    EXPECT_EQ(folder->getModelElementCount(), 40) << before;
  }
}

}  // namespace

void* operator new(std::size_t size) {
  return allocated(size);
}
void* operator new[](std::size_t size) {
  return allocated(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocatedOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocatedOrNull(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);  // NOLINT(cppcoreguidelines-*)
}
void operator delete[](void* memory) noexcept {
  std::free(memory);  // NOLINT(cppcoreguidelines-*)
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);  // NOLINT(cppcoreguidelines-*)
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);  // NOLINT(cppcoreguidelines-*)
}
