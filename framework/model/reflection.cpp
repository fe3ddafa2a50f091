#include "framework/model/reflection.h"

#include <unordered_map>

#include "framework/model/class_table.h"

namespace tav {
namespace {

template <class Entry> constexpr auto creatorOf() -> Owned<TAVObject> (*)() {
  if constexpr (Entry::concrete)
    return &makeObjectHere<typename Entry::Type>;
  else
    return nullptr;
}

/// The rows of every class, inherited ones first, in arrays that the classes' spans point into.
class ClassTable {
 public:
  ClassTable() {
    describe(Classes{});
    for (ClassInfo& info : infos_) collect(info);
    for (const ClassInfo& info : infos_) byName_.emplace(info.name, &info);
  }

  const ClassInfo& operator[](ClassId id) const { return infos_[id]; }
  const ClassInfo* find(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
  }

 private:
  template <class... Entries> void describe(ClassList<Entries...> /*list*/) {
    ((infos_[classId<typename Entries::Type>] = {typeText<typename Entries::Type>(),
                                                 classId<typename Entries::Type>,
                                                 {},
                                                 {},
                                                 {},
                                                 creatorOf<Entries>()}),
     ...);
  }

  void collect(ClassInfo& info) {
    // The tables hold a class's rows after its base's, because the class list is in pre-order.
    std::vector<const AttributeRow*>& attributes = attributes_[info.id];
    for (const AttributeRow& row : kAttributes)
      if (derives(info.id, row.owner)) attributes.push_back(&row);
    std::vector<LinkInfo>& links = links_[info.id];
    for (std::size_t i = 0; i < kLinks.size(); ++i)
      if (derives(info.id, kLinks[i].owner))
        links.push_back({&kLinks[i], static_cast<LinkNumber>(i), kOpposite[i]});
    std::vector<LinkInfo>& parts = parts_[info.id];
    for (const LinkInfo& link : links)
      if (link.row->kind == LinkKind::contained) parts.push_back(link);
    info.attributes = attributes;
    info.links = links;
    info.parts = parts;
  }

  std::array<ClassInfo, kClassCount> infos_;
  std::array<std::vector<const AttributeRow*>, kClassCount> attributes_;
  std::array<std::vector<LinkInfo>, kClassCount> links_;
  std::array<std::vector<LinkInfo>, kClassCount> parts_;
  std::unordered_map<std::string_view, const ClassInfo*> byName_;
};

const ClassTable& classTable() noexcept {
  static const ClassTable table;
  return table;
}

using Copies = std::unordered_map<const TAVObject*, TAVObject*>;

void copyAttributes(const TAVObject& from, TAVObject& to) {
  to.setName(from.getName());
  for (const AttributeRow* row : classInfo(from.classId()).attributes) row->set(to, row->get(from));
}

void copyReferences(const Copies& copies) {
  for (const auto& [original, copy] : copies) {
    for (const LinkInfo& link : classInfo(original->classId()).links) {
      if (link.row->kind != LinkKind::reference) continue;
      // Named anew: clang 14 cannot capture what a structured binding names.
      forEachAt(*link.row, *original, [&, &from = *copy](TAVObject& target) {
        const auto inside = copies.find(&target);
        linkObjects(link.number, from, inside == copies.end() ? target : *inside->second);
      });
    }
  }
}

}  // namespace

const ClassInfo& classInfo(ClassId id) noexcept {
  return classTable()[id];
}

const ClassInfo* findClass(std::string_view name) noexcept {
  return classTable().find(name);
}

bool isDefault(const Value& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return text->empty();
  if (const auto* store = std::get_if<TAVDataStore>(&value)) return *store == TAVDataStore{};
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number == 0;
  return !std::get<bool>(value);
}

Owned<TAVObject> makeObject(ClassId id) {
  return classInfo(id).create();
}

Owned<TAVObject> copyTree(const TAVObject& object) {
  Owned<TAVObject> root = classInfo(object.classId()).create();
  Copies copies{{&object, root.get()}};
  std::vector<const TAVObject*> waiting{&object};
  while (!waiting.empty()) {
    const TAVObject& original = *waiting.back();
    waiting.pop_back();
    TAVObject& copy = *copies.at(&original);
    copyAttributes(original, copy);
    for (const LinkInfo& link : classInfo(original.classId()).parts) {
      forEachAt(*link.row, original, [&](TAVObject& part) {
        Owned<TAVObject> made = classInfo(part.classId()).create();
        linkObjects(link.number, copy, *made);
        copies.emplace(&part, made.release());
        waiting.push_back(&part);
      });
    }
  }
  copyReferences(copies);
  return root;
}

void failOutOfRange(std::int64_t value, std::string_view member) {
  fail("TAV_F0001", std::to_string(value) + " does not fit " + std::string(member.substr(1)));
}

void failInvalid(std::string_view enumeration, int value) {
  fail("TAV_F0002", std::to_string(value) + " is no value of " + std::string(enumeration));
}

}  // namespace tav
