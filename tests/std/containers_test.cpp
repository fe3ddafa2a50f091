#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>

#include "framework/std/hash_set.h"
#include "framework/std/hashtable.h"
#include "framework/std/vector.h"

namespace {

struct Object {
  int key;
};

// Objects by their key; an object whose key is negative equals nothing, not even itself.
class Table : public TAVHashtable {
 public:
  using TAVHashtable::TAVHashtable;
  Table(const Table& other, std::int32_t buckets = -1)
      : _TAVContainer(other), TAVHashtable(other, buckets), hashMask(other.hashMask) {}
  Table& operator=(const Table&) = default;

  int compare2Object(const void* a, const void* b) const override { return compare2Key(a, b); }
  int compare2Key(const void* object, const void* key) const override {
    ++compared;
    const int k = keyOf(object);
    return k < 0 || k != keyOf(key) ? 1 : 0;
  }
  std::uint32_t hashObject(const void* object) const override { return hashKey(object); }
  std::uint32_t hashKey(const void* key) const override {
    ++hashed;
    return static_cast<std::uint32_t>(keyOf(key)) & hashMask;
  }

  std::uint32_t hashMask = 0xFFFFFFFF;
  mutable int compared = 0;
  mutable int hashed = 0;

 private:
  static int keyOf(const void* object) { return static_cast<const Object*>(object)->key; }
};

std::vector<void*> walk(const TAVContainer& container) {
  std::vector<void*> objects;
  TAVContainer::Iterator* it = container.newIterator(true);
  while (it->hasNext()) objects.push_back(it->next());
  EXPECT_EQ(it->next(), nullptr);
  container.deleteIterator(it);
  return objects;
}

void addAll(TAVHashtable& table, std::deque<Object>& objects) {
  for (Object& o : objects) table.add(&o, true, nullptr);
}

// The table against a plain list in which the object that was added last comes first.
TEST(Hashtable, BehavesLikeAListThroughRandomSteps) {
  for (const std::uint32_t mask : {0xFFFFFFFFU, 0x3U}) {
    std::mt19937 random(7);
    std::deque<Object> objects;
    std::vector<void*> list;
    Table table(1);
    table.hashMask = mask;
    for (int step = 0; step < 20000; ++step) {
      const Object key{static_cast<int>(random() % 200)};
      const auto expected = std::find_if(list.rbegin(), list.rend(),
                                         [&](void* o) { return static_cast<Object*>(o)->key == key.key; });
      TAVContainer::Iterator it(table);
      void* found = table.findFirst(&key, &it);
      ASSERT_EQ(found, expected == list.rend() ? nullptr : *expected) << "step " << step;
      ASSERT_EQ(table.contains(&key, nullptr), found != nullptr);
      ASSERT_EQ(it.get(), found);
      if (found && random() % 2 == 0) {
        ASSERT_EQ(table.remove(&it), found);
        ASSERT_EQ(table.remove(&it), nullptr) << "removed twice";
        list.erase(std::next(expected).base());
      } else {
        table.add(&objects.emplace_back(key), true, &it);
        ASSERT_EQ(it.get(), &objects.back());
        list.push_back(&objects.back());
      }
      if (random() % 1000 == 0) table.resize(static_cast<std::int32_t>(random() % 64));
      ASSERT_EQ(table.getCount(), static_cast<std::int32_t>(list.size()));
    }
    EXPECT_EQ(walk(table), list);
  }
}

TEST(Hashtable, AsksForAHashOnceAndNeverAgainForAnObject) {
  std::deque<Object> objects(1000, Object{1});
  Table table(4);
  addAll(table, objects);
  EXPECT_EQ(table.hashed, 1000);
  EXPECT_EQ(table.compared, 0) << "adding compares nothing, equal objects notwithstanding";
  EXPECT_GE(table.getBucketCount(), 1000) << "it grows";
  table.hashed = 0;
  objects.clear();  // from here on every look into an object is a fault that the sanitizers see
  Table copy(table, 8);
  EXPECT_EQ(copy.getBucketCount(), 8);
  copy = table;
  copy.resize(4096);
  TAVContainer::Iterator it(copy);
  it.next();
  copy.remove(&it);
  EXPECT_EQ(copy.getCount(), 999);
  copy.empty();
  table.empty();
  EXPECT_EQ(table.getCount(), 0);
  EXPECT_EQ(copy.hashed + copy.compared, 0);
}

TEST(Hashtable, EqualTablesHoldEqualObjects) {
  std::deque<Object> some{{1}, {2}, {3}}, same{{3}, {1}, {2}}, other{{1}, {2}, {4}}, odd{{-1}};
  Table a, b(64), c, d, empty;
  addAll(a, some);
  addAll(b, same);
  addAll(c, other);
  addAll(d, odd);
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(a != c);
  EXPECT_TRUE(a != empty);
  EXPECT_TRUE(d != d) << "what equals nothing makes no equal table";
}

TEST(Hashtable, WalkingGoesOnWhereAnObjectWasRemoved) {
  std::deque<Object> objects{{1}, {2}, {3}, {4}};
  Table table;
  addAll(table, objects);
  for (TAVContainer::Iterator it(table); it.hasNext();)
    if (static_cast<Object*>(it.next())->key % 2 == 0) table.remove(&it);
  EXPECT_EQ(walk(table), (std::vector<void*>{&objects[0], &objects[2]}));
}

TEST(Vector, KeepsOrderAndHasNothingOutside) {
  int a = 0, b = 0;
  TAVVector vector;
  vector.add(&b, true, nullptr);
  vector.add(&a, true, nullptr);
  vector.add(&b, true, nullptr);
  const TAVVector copy(vector);
  vector.empty();
  EXPECT_EQ(vector[0], nullptr);
  EXPECT_EQ(walk(copy), (std::vector<void*>{&b, &a, &b}));
  EXPECT_EQ(copy[1], &a);
  EXPECT_EQ(copy[3], nullptr);
  EXPECT_EQ(copy[-1], nullptr);
}

TEST(StringHashSet, HoldsEachStringOnceInTheOrderOfAdding) {
  TAVStringHashSet set(5);
  for (const char* text : {"b", "a", "b", "", "A", "a"}) set.add(text);
  EXPECT_EQ(set.getCount(), 4);
  EXPECT_TRUE(set.contains("A"));
  const TAVStringHashSet copy(set);
  set.clear();
  EXPECT_FALSE(set.contains("a"));
  EXPECT_FALSE(TAVStringHashSet::Iterator(set).hasNext());
  std::string members;
  for (TAVStringHashSet::Iterator it(copy); it.hasNext();) members += it.next().str() + ";";
  EXPECT_EQ(members, "b;a;;A;");
}

}  // namespace
