#include "framework/model/class_table.h"

#include <unordered_map>

#include "framework/model/class_info.h"
#include "framework/model/link_access.h"

namespace tav {

constinit const std::span<const LinkRow> kLinkRows = kLinks;
constinit const std::span<const std::uint8_t> kOppositeRows = kOpposite;

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

}  // namespace

const ClassInfo& classInfo(ClassId id) noexcept {
  return classTable()[id];
}

Owned<TAVObject> makeObject(ClassId id) {
  return classInfo(id).create();
}

const ClassInfo* findClass(std::string_view name) noexcept {
  return classTable().find(name);
}

}  // namespace tav
