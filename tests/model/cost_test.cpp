#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "framework/model/model.h"

// What a step on a collection costs must not grow with the collection. Times are the best of several runs,
// and the bounds leave room for a busy machine: what they are to catch costs a hundred times as much.

namespace {

tav::Owned<TAVTable> makeTable(int columns) {
  auto table = tav::make<TAVTable>("t");
  for (int i = 0; i < columns; ++i) table->addFeature(tav::make<TAVColumn>("c" + std::to_string(i)));
  return table;
}

/// The seconds that `work` takes on a new table of `columns`.
template <class F> double timeOf(int columns, F work) {
  double best = 1e9;
  for (int run = 0; run < 8; ++run) {
    const auto table = makeTable(columns);
    const std::clock_t begin = std::clock();
    work(*table);
    best = std::min(best, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
  }
  return best;
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
  const double byFirst = timeOf(kSize, removeFirst);
  EXPECT_LT(timeOf(kSize, removeAt([](int) { return 0; })), 3 * byFirst);
  EXPECT_LT(timeOf(kSize, removeAt([](int count) { return count - 1; })), 3 * byFirst);
  EXPECT_LT(timeOf(kSize, removeAt([](int count) { return count / 2; })), 3 * byFirst);
}

// Eight times as many steps of constant cost take eight times as long, steps that walk the collection 64
// times.
TEST(Cost, OfRemovingAndRenamingGrowsWithTheirNumber) {
  const auto growth = [](auto work) { return timeOf(2 * kSize, work) / timeOf(kSize / 2, work); };
  EXPECT_LT(growth(removeFirst), 9);
  EXPECT_LT(growth(removeAt([](int) { return 0; })), 9);
  EXPECT_LT(growth(removeAt([](int count) { return count / 2; })), 9);
  EXPECT_LT(growth(rename), 9);
}

}  // namespace
