#include "framework/model/look_up.h"

#include <algorithm>
#include <utility>

#include "framework/model/end_walk.h"
#include "framework/model/indexes.h"

// What can be asked of a collection. A question may make an index, but moves no slot: whoever walks a
// collection can ask it meanwhile.

namespace tav {

Indexes& indexesOf(ManyData& data) {
  if (!data.indexes) data.indexes.reset(std::make_unique<Indexes>().release());
  return *data.indexes;
}

TAVObject* findByName(ManyData& data, std::string_view name, ClassId kind) {
  if (data.slots.size() <= 2 * kSmall && data.live <= kSmall) {
    for (const Slot& slot : data.slots)
      if (slot.other && slot.other->getName() == name && derives(slot.other->classId(), kind))
        return slot.other;
    return nullptr;
  }
  Indexes& indexes = indexesOf(data);
  if (!indexes.names) indexes.names = std::make_unique<NameIndex>(data.slots);
  return indexes.names->find(data.slots, name, kind);
}

namespace {

const PlaceIndex& placesOf(ManyData& data, ClassId kind) {
  std::vector<PlaceIndex>& places = indexesOf(data).places;
  const auto found = std::find_if(places.begin(), places.end(),
                                  [&](const PlaceIndex& index) { return index.kind() == kind; });
  return found != places.end() ? *found : places.emplace_back(data.slots, kind);
}

bool scan(const ManyData& data, const TAVObject& object) {
  return std::any_of(data.slots.begin(), data.slots.end(),
                     [&](const Slot& slot) { return slot.other == &object; });
}

bool containsObject(ManyData& data, TAVObject& object) {
  // The object's own end answers when it is single or short; only between two long ends an index is needed.
  const std::uint8_t back = kOppositeRows[data.row];
  const auto holds = [&](const Slot& slot) {
    return slot.other && slot.peer < data.slots.size() && data.slots[slot.peer].other == &object;
  };
  if (!kLinkRows[back].isMany()) return holds(LinkAccess::slot(LinkAccess::one(back, object)));
  const ManyData* other = LinkAccess::many(back, object).get();
  if (!other) return false;
  if (other->slots.size() <= kSmall) return std::any_of(other->slots.begin(), other->slots.end(), holds);
  if (data.slots.size() <= kSmall) return scan(data, object);
  Indexes& indexes = indexesOf(data);
  if (!indexes.members) {
    auto members = std::make_unique<std::unordered_map<const TAVObject*, std::uint32_t>>();
    for (const Slot& slot : data.slots)
      if (slot.other) ++(*members)[slot.other];
    indexes.members = std::move(members);
  }
  return indexes.members->contains(&object);
}

}  // namespace

EndWalk::EndWalk(const LinkRow& row, const TAVObject& object) {
  // The rows' accessors serve reading and writing alike; nothing is written through them here.
  auto& writable = const_cast<TAVObject&>(object);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  if (!row.isMany()) {
    at_ = &LinkAccess::slot(row.one(writable));
    end_ = at_ + 1;
  } else if (const ManyData* data = LinkAccess::data(std::as_const(row.many(writable)))) {
    at_ = data->slots.data() + data->front;
    end_ = data->slots.data() + data->slots.size();
  }
}

TAVObject* EndWalk::next() noexcept {
  while (at_ != end_ && !at_->other) ++at_;
  return at_ == end_ ? nullptr : (at_++)->other;
}

}  // namespace tav

std::int32_t TAVSdkCollection::getCount(tav::ClassId kind) const {
  return data_ ? static_cast<std::int32_t>(tav::placesOf(*data_, kind).count()) : 0;
}

TAVObject* TAVSdkCollection::at(std::int32_t index, tav::ClassId kind) const {
  if (index < 0 || index >= getCount()) return nullptr;
  const auto place = static_cast<std::uint32_t>(index);
  // Without holes, or with holes in front alone, every object's place is known without an index.
  if (kind == 0 && data_->slots.size() - data_->front == data_->live)
    return data_->slots[data_->front + place].other;
  const tav::PlaceIndex& places = tav::placesOf(*data_, kind);
  return place < places.count() ? data_->slots[places.find(place)].other : nullptr;
}

TAVObject* TAVObjectCollection::get(std::string_view name, tav::ClassId kind) const {
  return data_ ? tav::findByName(*data_, name, kind) : nullptr;
}

bool TAVObjectCollection::contains(const TAVObject& object) const {
  // Asking reads the object's own ends, for which the rows have only one accessor.
  return data_ && tav::containsObject(*data_, const_cast<TAVObject&>(
                                                  object));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}
