#include "framework/model/name_index.h"

#include <charconv>

#include "framework/model/object.h"

namespace tav {
namespace {

std::uint32_t hashOf(std::string_view name) noexcept {
  const std::size_t hash = std::hash<std::string_view>{}(name);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

NameIndex::NameIndex(std::vector<Slot>& slots) : table_(64) {
  for (std::uint32_t i = 0; i < slots.size(); ++i)
    if (slots[i].other) append(slots, i);
}

void NameIndex::append(std::vector<Slot>& slots, std::uint32_t slot) {
  if (2 * (used_ + 1) > table_.size()) grow();
  Chain& chain = chainOf(hashOf(slots[slot].other->getName().view()));
  slots[slot].nextSameHash = kNone;
  if (chain.head == kNone) {
    chain.head = slot;
  } else {
    slots[chain.tail].nextSameHash = slot;
  }
  chain.tail = slot;
}

TAVObject* NameIndex::find(std::vector<Slot>& slots, std::string_view name, ClassId kind) {
  Chain& chain = chainOf(hashOf(name));
  // Holes in front never come back, so each is passed once however often the name is asked for.
  while (chain.head != kNone && chain.head != chain.tail && !slots[chain.head].other)
    chain.head = slots[chain.head].nextSameHash;
  for (std::uint32_t i = chain.head; i != kNone; i = slots[i].nextSameHash) {
    TAVObject* object = slots[i].other;
    if (object && object->getName() == name && derives(object->classId(), kind)) return object;
  }
  return nullptr;
}

NameIndex::Chain& NameIndex::chainOf(std::uint32_t hash) {
  const std::size_t mask = table_.size() - 1;
  std::size_t place = hash & mask;
  while (table_[place].tail != kNone && table_[place].hash != hash) place = (place + 1) & mask;
  if (table_[place].tail == kNone) {
    table_[place].hash = hash;
    ++used_;
  }
  return table_[place];
}

void NameIndex::grow() {
  std::vector<Chain> old(table_.size() * 2);
  old.swap(table_);
  used_ = 0;
  for (const Chain& chain : old)
    if (chain.tail != kNone) chainOf(chain.hash) = chain;
}

UniqueNumbers::Numbers& UniqueNumbers::of(std::string_view stem) {
  const auto found = stems_.find(stem);
  return found != stems_.end() ? found->second : stems_[std::string(stem)];
}

void UniqueNumbers::release(std::string_view name) {
  const std::size_t digits = name.find_last_not_of("0123456789") + 1;
  if (digits == 0 || digits == name.size() || name[digits] == '0') return;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(name.data() + digits, name.data() + name.size(), number);
  if (error != std::errc()) return;
  const auto found = stems_.find(name.substr(0, digits));
  if (found != stems_.end() && number >= 2 && number < found->second.next) found->second.freed.insert(number);
}

}  // namespace tav
