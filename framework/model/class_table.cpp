#include "framework/model/class_table.h"

#include <algorithm>
#include <array>

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

/// How many rows all classes have together, inherited ones counted for each.
template <class Rows, class Predicate> consteval std::size_t countRows(const Rows& rows, Predicate holds) {
  std::size_t count = 0;
  for (std::size_t id = 0; id < kClassCount; ++id)
    for (const auto& row : rows)
      if (derives(static_cast<ClassId>(id), row.owner) && holds(row)) ++count;
  return count;
}

constexpr bool isPart(const LinkRow& row) {
  return row.kind == LinkKind::contained;
}

constexpr std::size_t kAttributeCount = countRows(kAttributes, [](const AttributeRow&) { return true; });
constexpr std::size_t kLinkCount = countRows(kLinks, [](const LinkRow&) { return true; });
constexpr std::size_t kPartCount = countRows(kLinks, isPart);

/// The rows of every class, inherited ones first, in arrays that the classes' spans point into. They are of
/// fixed size: the table is asked for where nothing may fail.
class ClassTable {
 public:
  ClassTable() noexcept {
    describe(Classes{});
    for (ClassInfo& info : infos_) collect(info);
    for (std::size_t id = 0; id < kClassCount; ++id) byName_[id] = &infos_[id];
    std::sort(byName_.begin(), byName_.end(), [](const auto* a, const auto* b) { return a->name < b->name; });
  }

  const ClassInfo& operator[](ClassId id) const noexcept { return infos_[id]; }
  const ClassInfo* find(std::string_view name) const noexcept {
    const auto found =
        std::lower_bound(byName_.begin(), byName_.end(), name,
                         [](const auto* info, std::string_view text) { return info->name < text; });
    return found == byName_.end() || (*found)->name != name ? nullptr : *found;
  }

 private:
  template <class... Entries> void describe(ClassList<Entries...> /*list*/) noexcept {
    ((infos_[classId<typename Entries::Type>] = {typeText<typename Entries::Type>(),
                                                 classId<typename Entries::Type>,
                                                 {},
                                                 {},
                                                 {},
                                                 creatorOf<Entries>()}),
     ...);
  }

  void collect(ClassInfo& info) noexcept {
    // The tables hold a class's rows after its base's, because the class list is in pre-order.
    const AttributeRow** const attributes = attributesEnd_;
    for (const AttributeRow& row : kAttributes)
      if (derives(info.id, row.owner)) *attributesEnd_++ = &row;
    LinkInfo* const links = linksEnd_;
    LinkInfo* const parts = partsEnd_;
    for (std::size_t i = 0; i < kLinks.size(); ++i) {
      if (!derives(info.id, kLinks[i].owner)) continue;
      *linksEnd_ = {&kLinks[i], static_cast<LinkNumber>(i), kOpposite[i]};
      if (isPart(kLinks[i])) *partsEnd_++ = *linksEnd_;
      ++linksEnd_;
    }
    info.attributes = {attributes, attributesEnd_};
    info.links = {links, linksEnd_};
    info.parts = {parts, partsEnd_};
  }

  std::array<ClassInfo, kClassCount> infos_;
  std::array<const AttributeRow*, kAttributeCount> attributes_{};
  std::array<LinkInfo, kLinkCount> links_;
  std::array<LinkInfo, kPartCount> parts_;
  std::array<const ClassInfo*, kClassCount> byName_{};
  const AttributeRow** attributesEnd_ = attributes_.data();
  LinkInfo* linksEnd_ = links_.data();
  LinkInfo* partsEnd_ = parts_.data();
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
