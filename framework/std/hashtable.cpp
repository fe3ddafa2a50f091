#include "framework/std/hashtable.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

std::size_t bucketCount(std::int32_t wanted) {
  return std::bit_ceil(static_cast<std::size_t>(std::max(wanted, 1)));
}

// A hook's hash may be weak in its low bits; the multiplication spreads all of them over the upper ones.
std::size_t bucketIndex(std::uint32_t hash, std::size_t buckets) noexcept {
  return static_cast<std::size_t>((hash * std::uint64_t{0x9E3779B97F4A7C15}) >> 32) & (buckets - 1);
}

bool eachHasItsEqual(const TAVHashtable& objects, const TAVHashtable& in) {
  for (TAVContainer::Iterator it(objects); it.hasNext();)
    if (!in.contains(it.next(), nullptr)) return false;
  return true;
}

}  // namespace

TAVHashtable::TAVHashtable(std::int32_t buckets) : buckets_(bucketCount(buckets), kNone) {}

TAVHashtable::TAVHashtable(const TAVHashtable& source, std::int32_t buckets)
    : _TAVContainer(source), TAVContainer(source), buckets_(source.buckets_), entries_(source.entries_) {
  if (buckets >= 0) rebuild(bucketCount(buckets));
}

TAVHashtable::~TAVHashtable() = default;

void TAVHashtable::empty() {
  TAVContainer::empty();
  entries_.clear();
  std::fill(buckets_.begin(), buckets_.end(), kNone);
}

bool TAVHashtable::add(void* object, bool /*flag*/, Iterator* iterator) {
  if (objects_.size() >= buckets_.size()) {
    const bool halfAreHoles = static_cast<std::size_t>(count_) <= objects_.size() / 2;
    rebuild(halfAreHoles ? buckets_.size() : buckets_.size() * 2);
  }
  const std::uint32_t hash = hashObject(object);
  const auto index = static_cast<std::uint32_t>(objects_.size());
  objects_.push_back(object);
  entries_.push_back({hash, bucketOf(hash)});
  bucketOf(hash) = index;
  ++count_;
  if (iterator) iterator->position_ = index;
  return true;
}

bool TAVHashtable::contains(const void* object, Iterator* iterator) const {
  return find(hashObject(object), iterator,
              [&](const void* stored) { return compare2Object(stored, object) == 0; }) != nullptr;
}

void* TAVHashtable::findFirst(const void* key, Iterator* iterator) const {
  return find(hashKey(key), iterator, [&](const void* stored) { return compare2Key(stored, key) == 0; });
}

void* TAVHashtable::remove(Iterator* iterator) {
  void* object = iterator->get();
  if (!object) return nullptr;
  const auto index = static_cast<std::uint32_t>(iterator->position_);
  std::uint32_t* link = &bucketOf(entries_[index].hash);
  while (*link != index) link = &entries_[*link].next;
  *link = entries_[index].next;
  objects_[index] = hole();
  --count_;
  return object;
}

TAVHashtable& TAVHashtable::operator=(const TAVHashtable& source) {
  TAVContainer::operator=(source);
  buckets_ = source.buckets_;
  entries_ = source.entries_;
  return *this;
}

bool TAVHashtable::operator==(const TAVHashtable& other) const {
  return getCount() == other.getCount() && eachHasItsEqual(*this, other) && eachHasItsEqual(other, *this);
}

bool TAVHashtable::operator!=(const TAVHashtable& other) const {
  return !operator==(other);
}

void TAVHashtable::resize(std::int32_t buckets) {
  rebuild(bucketCount(buckets));
}

std::uint32_t& TAVHashtable::bucketOf(std::uint32_t hash) noexcept {
  return buckets_[bucketIndex(hash, buckets_.size())];
}

std::uint32_t TAVHashtable::firstOf(std::uint32_t hash) const noexcept {
  return buckets_[bucketIndex(hash, buckets_.size())];
}

template <class Matches>
void* TAVHashtable::find(std::uint32_t hash, Iterator* iterator, Matches matches) const {
  for (std::uint32_t i = firstOf(hash); i != kNone; i = entries_[i].next) {
    if (entries_[i].hash != hash || !matches(objects_[i])) continue;
    if (iterator) iterator->position_ = i;
    return objects_[i];
  }
  return nullptr;
}

// The order inside a bucket, newest first, is kept because the entries are linked in the order of adding.
void TAVHashtable::rebuild(std::size_t buckets) {
  closeHoles();
  buckets_.assign(buckets, kNone);
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    std::uint32_t& first = bucketOf(entries_[i].hash);
    entries_[i].next = first;
    first = i;
  }
}

void TAVHashtable::closeHoles() {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    if (objects_[i] == hole()) continue;
    objects_[kept] = objects_[i];
    entries_[kept++] = entries_[i];
  }
  objects_.resize(kept);
  entries_.resize(kept);
}
