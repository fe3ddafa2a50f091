#include "framework/model/name_index.h"

#include <algorithm>
#include <charconv>
#include <new>

#include "framework/model/object.h"

namespace tav {
namespace {

std::uint32_t hashOf(std::string_view name) noexcept {
  const std::size_t hash = std::hash<std::string_view>{}(name);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

NameIndex::NameIndex(std::span<Slot> slots) : table_(64) {
  for (std::uint32_t i = 0; i < slots.size(); ++i)
    if (slots[i].other) append(slots, i);
}

void NameIndex::append(std::span<Slot> slots, std::uint32_t slot) {
  if (2 * (used_ + 1) > table_.size()) grow();
  const std::uint32_t hash = hashOf(slots[slot].other->getName().view());
  Chain& chain = table_[placeOf(hash)];
  slots[slot].nextSameHash = kNone;
  if (chain.tail == kNone) {
    chain = {hash, slot, slot};
    ++used_;
    return;
  }
  slots[chain.tail].nextSameHash = slot;
  chain.tail = slot;
}

void NameIndex::remove(std::span<const Slot> slots, std::uint32_t slot) {
  if (!moved_.empty()) moved_.erase({hashOf(slots[slot].other->getName().view()), slot});
}

void NameIndex::rename(std::span<const Slot> slots, std::uint32_t slot, std::string_view name) {
  remove(slots, slot);
  moved_.emplace(hashOf(name), slot);
}

TAVObject* NameIndex::find(std::span<Slot> slots, std::string_view name, ClassId kind) {
  const std::uint32_t hash = hashOf(name);
  // Both are in insertion order, so the first of all is the lower slot; kNone is above every slot.
  const std::uint32_t slot =
      std::min(findInChain(slots, hash, name, kind), findMoved(slots, hash, name, kind));
  return slot == kNone ? nullptr : slots[slot].other;
}

std::uint32_t NameIndex::findInChain(std::span<Slot> slots, std::uint32_t hash, std::string_view name,
                                     ClassId kind) {
  Chain& chain = table_[placeOf(hash)];
  // Holes and renamed objects in front never come back, so each is passed once however often the name is
  // asked for.
  const auto isGone = [&](const Slot& slot) {
    return !slot.other || (!moved_.empty() && hashOf(slot.other->getName().view()) != hash);
  };
  while (chain.head != chain.tail && isGone(slots[chain.head])) chain.head = slots[chain.head].nextSameHash;
  for (std::uint32_t i = chain.head; i != kNone; i = slots[i].nextSameHash) {
    const TAVObject* object = slots[i].other;
    if (object && object->getName() == name && derives(object->classId(), kind)) return i;
  }
  return kNone;
}

std::uint32_t NameIndex::findMoved(std::span<const Slot> slots, std::uint32_t hash, std::string_view name,
                                   ClassId kind) const {
  for (auto at = moved_.lower_bound({hash, 0}); at != moved_.end() && at->first == hash; ++at) {
    const TAVObject* object = slots[at->second].other;
    if (object->getName() == name && derives(object->classId(), kind)) return at->second;
  }
  return kNone;
}

// The place of a hash's chain, or the free one where it belongs; never more than half of them are taken.
std::size_t NameIndex::placeOf(std::uint32_t hash) const noexcept {
  const std::size_t mask = table_.size() - 1;
  std::size_t place = hash & mask;
  while (table_[place].tail != kNone && table_[place].hash != hash) place = (place + 1) & mask;
  return place;
}

void NameIndex::grow() {
  std::vector<Chain> old(table_.size() * 2);
  old.swap(table_);
  for (const Chain& chain : old)
    if (chain.tail != kNone) table_[placeOf(chain.hash)] = chain;
}

UniqueNumbers::Numbers& UniqueNumbers::of(std::string_view stem) {
  const auto found = stems_.find(stem);
  return found != stems_.end() ? found->second : stems_[std::string(stem)];
}

void UniqueNumbers::release(std::string_view name) noexcept {
  const std::size_t digits = name.find_last_not_of("0123456789") + 1;
  if (digits == 0 || digits == name.size() || name[digits] == '0') return;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(name.data() + digits, name.data() + name.size(), number);
  if (error != std::errc()) return;
  const auto found = stems_.find(name.substr(0, digits));
  if (found == stems_.end() || number < 2 || number >= found->second.next) return;
  try {
    found->second.freed.insert(number);
  } catch (const std::bad_alloc&) {
    stems_.erase(found);  // its numbers are then tried from 2 on again
  }
}

}  // namespace tav
