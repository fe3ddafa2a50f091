#include <gtest/gtest.h>

#include "framework/model/model.h"
#include "tests/support/timing.h"

// What a step on a collection costs must not grow with the collection. The bounds leave room for a busy
// machine: what they are to catch costs a hundred times as much.

namespace {

tav::Owned<TAVTable> makeTable(int columns) {
  auto table = tav::make<TAVTable>("t");
  for (int i = 0; i < columns; ++i) table->addFeature(tav::make<TAVColumn>("c" + std::to_string(i)));
  return table;
}

/// What `work` takes on a new table of `columns`.
template <class F> tav::test::Timed timeOf(int columns, F work) {
  return [columns, work] {
    const auto table = makeTable(columns);
    return tav::test::secondsOf([&] { work(*table); });
  };
}

void removeFirst(TAVTable& table) {
  while (TAVFeature* feature = table.features.first()) {
    ASSERT_EQ(table.features.get(feature->getName()), feature);
    tav::destroy(*feature);
  }
}

/// Removes the object at the place that `next` gives for a count, with a look-up after each.
template <class F> auto removeAt(F next) {
  return [next](TAVTable& table) {
    const std::string last = table.features[table.features.getCount() - 1]->getName().str();
    while (TAVFeature* feature = table.features[next(table.features.getCount())]) {
      tav::destroy(*feature);
      static_cast<void>(table.features.get(last));
    }
  };
}

void rename(TAVTable& table) {
  int number = 0;
  for (TAVFeature& feature : table.features) {
    feature.setName("renamed " + std::to_string(number++));
    ASSERT_EQ(table.features.get(feature.getName()), &feature);
  }
}

constexpr int kSize = 10000;

TEST(Cost, RemovingByPlaceIsAsCheapAsFromTheFront) {
  const auto isAsCheap = [](auto next) {
    return tav::test::growsAtMost(timeOf(kSize, removeFirst), timeOf(kSize, removeAt(next)), 3);
  };
  EXPECT_TRUE(isAsCheap([](int) { return 0; }));
  EXPECT_TRUE(isAsCheap([](int count) { return count - 1; }));
  EXPECT_TRUE(isAsCheap([](int count) { return count / 2; }));
}

// Four times as many steps of constant cost take four times as long, steps that walk the collection 16 times.
TEST(Cost, OfRemovingAndRenamingGrowsWithTheirNumber) {
  const auto grows = [](auto work) {
    return tav::test::growsAtMost(timeOf(kSize / 2, work), timeOf(2 * kSize, work), 9);
  };
  EXPECT_TRUE(grows(removeFirst));
  EXPECT_TRUE(grows(removeAt([](int) { return 0; })));
  EXPECT_TRUE(grows(removeAt([](int count) { return count / 2; })));
  EXPECT_TRUE(grows(rename));
}

}  // namespace
