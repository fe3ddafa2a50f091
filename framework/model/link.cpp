#include "framework/model/link.h"

#include <algorithm>
#include <cassert>
#include <functional>

#include "framework/model/class_table.h"
#include "framework/model/name_index.h"
#include "framework/model/reflection.h"

namespace tav {

// Below this many slots a walk is cheaper than an index.
constexpr std::size_t kSmall = 8;

/// The only code that touches slots.
struct LinkAccess {
  static OneBase& one(LinkNumber row, TAVObject& object) { return kLinks[row].one(object); }
  static std::unique_ptr<ManyData>& many(LinkNumber row, TAVObject& object) {
    return data(kLinks[row].many(object));
  }
  static std::unique_ptr<ManyData>& data(TAVSdkCollection& collection) { return collection.data_; }
  static const ManyData* data(const TAVSdkCollection& collection) { return collection.data_.get(); }
  static Slot& slot(OneBase& end) { return end.slot_; }

  static Slot& slot(LinkNumber row, TAVObject& object, std::uint32_t place) {
    return kLinks[row].isMany() ? many(row, object)->slots[place] : one(row, object).slot_;
  }
  static bool& doomed(TAVObject& object) { return object.doomed_; }
};

namespace {

std::uint32_t append(LinkNumber row, TAVObject& object, TAVObject& other) {
  if (!kLinks[row].isMany()) {
    LinkAccess::slot(LinkAccess::one(row, object)).other = &other;
    return 0;
  }
  std::unique_ptr<ManyData>& data = LinkAccess::many(row, object);
  if (!data) {
    data = std::make_unique<ManyData>();
    data->row = row;
  }
  const auto place = static_cast<std::uint32_t>(data->slots.size());
  data->slots.push_back({&other});
  ++data->live;
  if (data->indexes) {
    if (data->indexes->names) data->indexes->names->append(data->slots, place);
    if (data->indexes->members) ++(*data->indexes->members)[&other];
  }
  return place;
}

/// Closes the holes of a collection and tells the other ends where their slots are now.
void closeHoles(ManyData& data) {
  if (data.live == data.slots.size()) return;
  const LinkNumber back = kOpposite[data.row];
  std::uint32_t to = 0;
  for (const Slot& slot : data.slots) {
    if (!slot.other) continue;
    data.slots[to] = slot;
    LinkAccess::slot(back, *slot.other, slot.peer).peer = to;
    ++to;
  }
  data.slots.resize(to);
  if (data.indexes) data.indexes->names.reset();  // its chains name the old places
}

void removeSlot(LinkNumber row, TAVObject& object, std::uint32_t place) {
  if (!kLinks[row].isMany()) {
    LinkAccess::slot(LinkAccess::one(row, object)) = {};
    return;
  }
  ManyData& data = *LinkAccess::many(row, object);
  Slot& slot = data.slots[place];
  if (data.indexes) {
    if (data.indexes->numbers) data.indexes->numbers->release(slot.other->getName().view());
    if (auto* members = data.indexes->members.get()) {
      const auto found = members->find(slot.other);
      if (--found->second == 0) members->erase(found);
    }
  }
  slot.other = nullptr;
  slot.peer = kNone;
  --data.live;
  if (data.slots.size() - data.live > data.live + kSmall) closeHoles(data);
}

void unlinkSlot(LinkNumber row, TAVObject& object, std::uint32_t place) {
  const Slot slot = LinkAccess::slot(row, object, place);
  removeSlot(kOpposite[row], *slot.other, slot.peer);
  // Closing holes at the other end may have moved nothing here, but this slot's place is still its own.
  removeSlot(row, object, place);
}

Indexes& indexesOf(ManyData& data) {
  if (!data.indexes) data.indexes.reset(new Indexes);
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

bool scan(const ManyData& data, const TAVObject& object) {
  return std::any_of(data.slots.begin(), data.slots.end(),
                     [&](const Slot& slot) { return slot.other == &object; });
}

bool containsObject(ManyData& data, TAVObject& object) {
  const LinkNumber back = kOpposite[data.row];
  const auto holds = [&](const Slot& slot) {
    return slot.other && slot.peer < data.slots.size() && data.slots[slot.peer].other == &object;
  };
  if (!kLinks[back].isMany()) return holds(LinkAccess::slot(LinkAccess::one(back, object)));
  const ManyData* other = LinkAccess::many(back, object).get();
  if (!other) return false;
  if (other->slots.size() <= kSmall) return std::any_of(other->slots.begin(), other->slots.end(), holds);
  if (data.slots.size() <= kSmall) return scan(data, object);
  Indexes& indexes = indexesOf(data);
  if (!indexes.members) {
    indexes.members = std::make_unique<std::unordered_map<const TAVObject*, std::uint32_t>>();
    for (const Slot& slot : data.slots)
      if (slot.other) ++(*indexes.members)[slot.other];
  }
  return indexes.members->contains(&object);
}

/// Takes an object that goes with its container out of the slots that name it. Of those that go too nothing
/// but the slot is put right.
void leaveLinks(TAVObject& object) {
  const auto leave = [&](const LinkInfo& link, std::uint32_t place) {
    const Slot& slot = LinkAccess::slot(link.number, object, place);
    if (!slot.other) return;
    if (LinkAccess::doomed(*slot.other))
      LinkAccess::slot(link.opposite, *slot.other, slot.peer).other = nullptr;
    else
      removeSlot(link.opposite, *slot.other, slot.peer);
  };
  for (const LinkInfo& link : classInfo(object.classId()).links) {
    if (link.row->kind == LinkKind::contained || link.row->kind == LinkKind::container) continue;
    if (!link.row->isMany()) {
      leave(link, 0);
    } else if (ManyData* data = LinkAccess::many(link.number, object).get()) {
      for (std::uint32_t i = 0; i < data->slots.size(); ++i) leave(link, i);
    }
  }
}

/// Marks an object and all that it contains as going, and lists them.
std::vector<TAVObject*> doom(TAVObject& root) {
  std::vector<TAVObject*> tree;
  std::vector<TAVObject*> waiting{&root};
  while (!waiting.empty()) {
    TAVObject& object = *waiting.back();
    waiting.pop_back();
    LinkAccess::doomed(object) = true;
    tree.push_back(&object);
    for (const LinkInfo& link : classInfo(object.classId()).parts)
      forEachAt(*link.row, object, [&](TAVObject& part) { waiting.push_back(&part); });
  }
  return tree;
}

void leaveContainer(TAVObject& object) noexcept {
  for (const LinkInfo& link : classInfo(object.classId()).links)
    if (link.row->kind == LinkKind::container) clearLink(link.number, object);
}

}  // namespace

LinkNumber findLink(std::string_view member) noexcept {
  const auto row =
      std::find_if(kLinks.begin(), kLinks.end(), [&](const LinkRow& link) { return link.member == member; });
  assert(row != kLinks.end());
  return static_cast<LinkNumber>(row - kLinks.begin());
}

void linkObjects(LinkNumber row, TAVObject& from, TAVObject& to) {
  const LinkNumber back = kOpposite[row];
  clearLink(row, from);
  clearLink(back, to);
  const std::uint32_t i = append(row, from, to);
  const std::uint32_t j = append(back, to, from);
  LinkAccess::slot(row, from, i).peer = j;
  LinkAccess::slot(back, to, j).peer = i;
}

void clearLink(LinkNumber row, TAVObject& from) noexcept {
  if (!kLinks[row].isMany() && LinkAccess::slot(LinkAccess::one(row, from)).other) unlinkSlot(row, from, 0);
}

void unlinkObjects(LinkNumber row, TAVObject& from, TAVObject& to) noexcept {
  if (!kLinks[row].isMany()) {
    if (LinkAccess::slot(LinkAccess::one(row, from)).other == &to) unlinkSlot(row, from, 0);
    return;
  }
  const ManyData* data = LinkAccess::many(row, from).get();
  if (!data) return;
  const LinkNumber back = kOpposite[row];
  if (!kLinks[back].isMany()) {
    const Slot& slot = LinkAccess::slot(LinkAccess::one(back, to));
    if (slot.other == &from) unlinkSlot(row, from, slot.peer);
    return;
  }
  // The shorter of the two ends says where the link is.
  const ManyData* other = LinkAccess::many(back, to).get();
  if (!other) return;
  if (other->slots.size() < data->slots.size()) {
    std::uint32_t place = kNone;
    for (const Slot& slot : other->slots)
      if (slot.other == &from) place = std::min(place, slot.peer);
    if (place != kNone) unlinkSlot(row, from, place);
    return;
  }
  for (std::uint32_t i = 0; i < data->slots.size(); ++i)
    if (data->slots[i].other == &to) return unlinkSlot(row, from, i);
}

TAVString uniqueNameIn(TAVSdkCollection& collection, const TAVString& name, char separator) {
  ManyData* data = LinkAccess::data(collection).get();
  const auto taken = [&](std::string_view text) { return findByName(*data, text, 0) != nullptr; };
  if (!data || !taken(name)) return name;
  Indexes& indexes = indexesOf(*data);
  if (!indexes.numbers) indexes.numbers = std::make_unique<UniqueNumbers>();
  const std::string stem = name.str() + separator;
  UniqueNumbers::Numbers& numbers = indexes.numbers->of(stem);
  while (!numbers.freed.empty()) {
    const std::string free = stem + std::to_string(*numbers.freed.begin());
    numbers.freed.erase(numbers.freed.begin());
    if (!taken(free)) return free;  // another element may have taken the number by its own name
  }
  for (;;) {
    const std::string next = stem + std::to_string(numbers.next++);
    if (!taken(next)) return next;
  }
}

Owned<TAVObject> takeOut(TAVObject& object) noexcept {
  leaveContainer(object);
  return Owned<TAVObject>(&object);
}

void DestroyTree::operator()(TAVObject* object) const noexcept {
  leaveContainer(*object);
  std::vector<TAVObject*> tree = doom(*object);
  // Objects given back in the order of memory let the allocator join their places at once: a tenth of the
  // time of an import with many measures.
  std::sort(tree.begin(), tree.end(), std::less<>());
  for (TAVObject* part : tree) {
    leaveLinks(*part);
    delete part;
  }
}

void DeleteIndexes::operator()(Indexes* indexes) const noexcept {
  delete indexes;
}

EndWalk::EndWalk(const LinkRow& row, const TAVObject& object) {
  // The rows' accessors serve reading and writing alike; nothing is written through them here.
  auto& writable = const_cast<TAVObject&>(object);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  if (!row.isMany()) {
    at_ = &LinkAccess::slot(row.one(writable));
    end_ = at_ + 1;
  } else if (const ManyData* data = LinkAccess::data(std::as_const(row.many(writable)))) {
    at_ = data->slots.data();
    end_ = at_ + data->slots.size();
  }
}

TAVObject* EndWalk::next() noexcept {
  while (at_ != end_ && !at_->other) ++at_;
  return at_ == end_ ? nullptr : (at_++)->other;
}

}  // namespace tav

TAVObject* TAVSdkCollection::operator[](std::int32_t index) const {
  if (index < 0 || index >= getCount()) return nullptr;
  tav::closeHoles(*data_);
  return data_->slots[static_cast<std::size_t>(index)].other;
}

TAVObject* TAVObjectCollection::get(std::string_view name, tav::ClassId kind) const {
  return data_ ? tav::findByName(*data_, name, kind) : nullptr;
}

bool TAVObjectCollection::contains(const TAVObject& object) const {
  // Asking reads the object's own ends, for which the rows have only one accessor.
  return data_ && tav::containsObject(*data_, const_cast<TAVObject&>(
                                                  object));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

void TAVObject::setName(TAVString name) {
  using namespace tav;  // NOLINT(google-build-using-namespace)
  const auto forget = [&](const LinkInfo& link, TAVObject& holder) {
    Indexes* indexes = LinkAccess::many(link.opposite, holder)->indexes.get();
    if (!indexes) return;
    indexes->names.reset();  // made anew at the next look-up
    if (indexes->numbers) indexes->numbers->release(name_.view());
  };
  for (const LinkInfo& link : classInfo(classId()).links) {
    const bool listed = link.row->kind == LinkKind::container || link.row->kind == LinkKind::hidden;
    if (!listed || !kLinks[link.opposite].isMany()) continue;
    forEachAt(*link.row, *this, [&](TAVObject& holder) { forget(link, holder); });
  }
  name_ = std::move(name);
}
