#include "framework/model/link.h"

#include <algorithm>
#include <cassert>
#include <functional>
#include <memory>
#include <new>

#include "framework/model/end_walk.h"
#include "framework/model/indexes.h"
#include "framework/model/look_up.h"

// A slot and its peer name each other, so that a link ends at both its ends without a search. Taking a slot
// away from the middle of a collection would move all behind it, and each of those would have to tell its
// peer: a hole is left instead, and holes are closed when they outnumber the rest, which makes it constant
// cost for each removal.

namespace tav {
namespace {

void addToIndexes(ManyData& data, std::uint32_t place, TAVObject& other) {
  Indexes& indexes = *data.indexes;
  if (indexes.names) indexes.names->append(data.slots, place);
  if (indexes.members) ++(*indexes.members)[&other];
  for (PlaceIndex& places : indexes.places) places.append(other);
}

/// Adds a slot, or nothing at all when memory runs out.
std::uint32_t append(LinkNumber row, TAVObject& object, TAVObject& other) {
  if (!kLinkRows[row].isMany()) {
    LinkAccess::slot(LinkAccess::one(row, object)).other = &other;
    return 0;
  }
  std::unique_ptr<ManyData>& data = LinkAccess::many(row, object);
  if (!data) {
    data = std::make_unique<ManyData>();
    data->row = row;
  }
  const auto place = static_cast<std::uint32_t>(data->slots.size());
  data->slots.append({&other});
  ++data->live;
  if (!data->indexes) return place;
  try {
    addToIndexes(*data, place, other);
  } catch (...) {
    data->indexes.reset();  // some of them know the slot already; they are made anew at the next question
    data->slots.truncate(place);
    --data->live;
    throw;
  }
  return place;
}

/// Closes the holes of a collection and tells the other ends where their slots are now.
void closeHoles(ManyData& data) {
  const LinkNumber back = kOppositeRows[data.row];
  std::uint32_t to = 0;
  for (const Slot& slot : data.slots) {
    if (!slot.other) continue;
    data.slots[to] = slot;
    LinkAccess::slot(back, *slot.other, slot.peer).peer = to;
    ++to;
  }
  data.slots.truncate(to);
  data.front = 0;
  if (!data.indexes) return;
  // Both name the old places, and are made anew at the next question.
  data.indexes->names.reset();
  data.indexes->places.clear();
}

void removeFromIndexes(ManyData& data, std::uint32_t place) {
  Indexes& indexes = *data.indexes;
  TAVObject& object = *data.slots[place].other;
  if (indexes.names) indexes.names->remove(data.slots, place);
  if (indexes.numbers) indexes.numbers->release(object.getName().view());
  for (PlaceIndex& places : indexes.places) places.remove(place, object);
  if (!indexes.members) return;
  const auto found = indexes.members->find(&object);
  if (--found->second == 0) indexes.members->erase(found);
}

void removeSlot(LinkNumber row, TAVObject& object, std::uint32_t place) {
  if (!kLinkRows[row].isMany()) {
    LinkAccess::slot(LinkAccess::one(row, object)) = {};
    return;
  }
  ManyData& data = *LinkAccess::many(row, object);
  if (data.indexes) removeFromIndexes(data, place);
  // The hole keeps its place in the chain of the name index.
  data.slots[place].other = nullptr;
  data.slots[place].peer = kNone;
  --data.live;
  while (data.front < data.slots.size() && !data.slots[data.front].other) ++data.front;
  if (data.slots.size() - data.live > data.live + kSmall) closeHoles(data);
}

void unlinkSlot(LinkNumber row, TAVObject& object, std::uint32_t place) {
  const Slot slot = LinkAccess::slot(row, object, place);
  // Where this closes the holes of the other end, it changes peers here, but never the place of a slot.
  removeSlot(kOppositeRows[row], *slot.other, slot.peer);
  removeSlot(row, object, place);
}

/// Calls `visit` with each slot that an object has at one of its ends, holes among them.
template <class F> void forEachSlot(const LinkInfo& link, TAVObject& object, F visit) {
  if (!link.row->isMany()) {
    visit(LinkAccess::slot(LinkAccess::one(link.number, object)));
  } else if (const ManyData* data = LinkAccess::many(link.number, object).get()) {
    // By place: a link of an object to itself has both its slots in here.
    for (std::size_t i = 0; i < data->slots.size(); ++i) visit(data->slots[i]);
  }
}

/// Takes an object that goes with its container out of the slots that name it. Of those that go too nothing
/// but the slot is put right.
void leaveLinks(TAVObject& object) {
  for (const LinkInfo& link : classInfo(object.classId()).links) {
    if (link.row->kind == LinkKind::contained || link.row->kind == LinkKind::container) continue;
    forEachSlot(link, object, [&](const Slot& slot) {
      if (!slot.other) return;
      if (LinkAccess::doomed(*slot.other))
        LinkAccess::slot(link.opposite, *slot.other, slot.peer).other = nullptr;
      else
        removeSlot(link.opposite, *slot.other, slot.peer);
    });
  }
}

/// An object and all that it contains, marked as going. Objects of one tree name each other all over: without
/// the marks each would put right the collections and indexes of others that go as well. To be listed takes
/// no memory: what goes needs its container no longer, and that end names the next instead.
class Doomed {
 public:
  explicit Doomed(TAVObject& root) noexcept : root_(&root), last_(&root) {
    mark(root);
    for (TAVObject* object = root_; object; object = next(*object))
      for (const LinkInfo& link : classInfo(object->classId()).parts)
        forEachAt(*link.row, *object, [&](TAVObject& part) { append(part, link.opposite); });
  }

  [[nodiscard]] std::size_t count() const noexcept { return count_; }

  /// Calls `visit` for each, which may delete it.
  template <class F> void forEach(F visit) const {
    for (TAVObject* object = root_; object;) {
      TAVObject* const following = next(*object);
      visit(*object);
      object = following;
    }
  }

 private:
  void mark(TAVObject& object) noexcept {
    LinkAccess::doomed(object) = true;
    ++count_;
  }

  void append(TAVObject& part, LinkNumber container) noexcept {
    mark(part);
    LinkAccess::slot(LinkAccess::one(container, part)).other = nullptr;
    Numbering::set(part, container);
    if (last_ == root_)
      second_ = &part;
    else
      LinkAccess::slot(LinkAccess::one(rowOf(*last_), *last_)).other = &part;
    last_ = &part;
  }

  /// Which end of a part names the next.
  static LinkNumber rowOf(const TAVObject& part) noexcept {
    return static_cast<LinkNumber>(Numbering::get(part));
  }

  [[nodiscard]] TAVObject* next(TAVObject& object) const noexcept {
    return &object == root_ ? second_ : LinkAccess::slot(LinkAccess::one(rowOf(object), object)).other;
  }

  TAVObject* root_;
  TAVObject* second_ = nullptr;  // the root may have no container
  TAVObject* last_;
  std::size_t count_ = 0;
};

void leaveContainer(TAVObject& object) noexcept {
  for (const LinkInfo& link : classInfo(object.classId()).links)
    if (link.row->kind == LinkKind::container) clearLink(link.number, object);
}

}  // namespace

// By its text: a row cannot be found while compiling, because rows are known only where all classes are.
LinkNumber findLink(std::string_view member) noexcept {
  const auto row = std::find_if(kLinkRows.begin(), kLinkRows.end(),
                                [&](const LinkRow& link) { return link.member == member; });
  assert(row != kLinkRows.end());
  return static_cast<LinkNumber>(row - kLinkRows.begin());
}

void linkObjects(LinkNumber row, TAVObject& from, TAVObject& to) {
  // A single end holds one link only. So a part that is added to another container leaves the first one, and
  // never has two.
  const LinkNumber back = kOppositeRows[row];
  clearLink(row, from);
  clearLink(back, to);
  const std::uint32_t i = append(row, from, to);
  std::uint32_t j = 0;
  try {
    j = append(back, to, from);
  } catch (...) {
    // Indexes take memory when a slot leaves them too, and are made anew at the next question.
    if (kLinkRows[row].isMany()) LinkAccess::many(row, from)->indexes.reset();
    removeSlot(row, from, i);
    throw;
  }
  LinkAccess::slot(row, from, i).peer = j;
  LinkAccess::slot(back, to, j).peer = i;
}

void clearLink(LinkNumber row, TAVObject& from) noexcept {
  if (!kLinkRows[row].isMany() && LinkAccess::slot(LinkAccess::one(row, from)).other)
    unlinkSlot(row, from, 0);
}

void unlinkObjects(LinkNumber row, TAVObject& from, TAVObject& to) noexcept {
  if (!kLinkRows[row].isMany()) {
    if (LinkAccess::slot(LinkAccess::one(row, from)).other == &to) unlinkSlot(row, from, 0);
    return;
  }
  const ManyData* data = LinkAccess::many(row, from).get();
  if (!data) return;
  const LinkNumber back = kOppositeRows[row];
  if (!kLinkRows[back].isMany()) {
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
  // Counting from 2 each time would make many equal names cost their square.
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
  const Doomed tree(*object);
  const auto end = [](TAVObject* part) {
    leaveLinks(*part);
    delete part;
  };
  // Objects given back in the order of memory let the allocator join their places at once: a tenth of the
  // time of an import with many measures. Without the memory to sort them they go in any order.
  const std::unique_ptr<TAVObject*[]> sorted(new (std::nothrow) TAVObject*[tree.count()]);
  if (!sorted) return tree.forEach([&](TAVObject& part) { end(&part); });
  TAVObject** last = sorted.get();
  tree.forEach([&](TAVObject& part) { *last++ = &part; });
  std::sort(sorted.get(), last, std::less<>());
  std::for_each(sorted.get(), last, end);
}

void DeleteIndexes::operator()(Indexes* indexes) const noexcept {
  delete indexes;
}

}  // namespace tav

void TAVObject::setName(TAVString name) {
  using namespace tav;  // NOLINT(google-build-using-namespace)
  const auto forEachList = [&](auto visit) {
    for (const LinkInfo& link : classInfo(classId()).links) {
      const bool listed = link.row->kind == LinkKind::container || link.row->kind == LinkKind::hidden;
      if (!listed || !kLinkRows[link.opposite].isMany()) continue;
      forEachSlot(link, *this, [&](const Slot& slot) {
        if (slot.other) visit(*LinkAccess::many(link.opposite, *slot.other), slot.peer);
      });
    }
  };
  try {
    // Told before the name changes: an index knows an object by the hash of the name it has.
    forEachList([&](const ManyData& data, std::uint32_t place) {
      if (!data.indexes) return;
      if (data.indexes->names) data.indexes->names->rename(data.slots, place, name.view());
      if (data.indexes->numbers) data.indexes->numbers->release(name_.view());
    });
  } catch (...) {
    // Some know the new name already; they are made anew at the next question.
    forEachList([](ManyData& data, std::uint32_t /*place*/) { data.indexes.reset(); });
    throw;
  }
  name_ = std::move(name);
}
