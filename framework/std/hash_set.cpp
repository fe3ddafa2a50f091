#include "framework/std/hash_set.h"

#include <algorithm>

#include "framework/std/empty_table.h"

TAVStringHashSet::TAVStringHashSet(std::int32_t capacity) {
  members_.reserve(static_cast<std::size_t>(std::max(capacity, 0)));
}

TAVStringHashSet::TAVStringHashSet(const TAVStringHashSet& other)
    : _TAVContainer(other), TAVContainer(other) {
  *this = other;
}

TAVStringHashSet& TAVStringHashSet::operator=(const TAVStringHashSet& other) {
  if (this == &other) return *this;
  clear();
  for (Iterator it(other); it.hasNext();) add(it.next());
  return *this;
}

TAVStringHashSet::~TAVStringHashSet() = default;

bool TAVStringHashSet::add(const TAVString& text) {
  const auto [place, isNew] = members_.insert(text);
  if (!isNew) return false;
  objects_.push_back(const_cast<TAVString*>(&*place));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  ++count_;
  return true;
}

void TAVStringHashSet::clear() {
  TAVContainer::empty();
  tav::emptyTable(members_);
}

const TAVString& TAVStringHashSet::Iterator::next() noexcept {
  const void* member = TAVContainer::Iterator::next();
  return member ? *static_cast<const TAVString*>(member) : TAVString::getEmptyString();
}
