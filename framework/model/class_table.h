#pragma once

// All rows of all classes, collected and checked while compiling. A row without its opposite, an owning end
// whose opposite is no single container, or a class list out of order stops the compiler.

#include <array>

#include "framework/model/model.h"

namespace tav {

template <class Row, auto Part, class... Entries> consteval auto collectRows(ClassList<Entries...> /*list*/) {
  constexpr std::size_t kCount = (Part.template of<typename Entries::Type>().size() + ...);
  std::array<Row, kCount> rows{};
  std::size_t n = 0;
  const auto append = [&](const auto& own) {
    for (const Row& row : own) rows[n++] = row;
  };
  (append(Part.template of<typename Entries::Type>()), ...);
  return rows;
}

struct AttributesOf {
  template <class T> static consteval auto of() { return Meta<T>::attributes; }
};
struct LinksOf {
  template <class T> static consteval auto of() { return Meta<T>::links; }
};

inline constexpr auto kAttributes = collectRows<AttributeRow, AttributesOf{}>(Classes{});
inline constexpr auto kLinks = collectRows<LinkRow, LinksOf{}>(Classes{});
static_assert(kLinks.size() < 0xFF, "a link number no longer fits");

consteval bool isOpposite(const LinkRow& a, const LinkRow& b) {
  // Numbers first: comparing texts for every pair of rows exceeds clang's limit of constexpr steps.
  return a.owner == b.target && a.target == b.owner && a.opposite == b.name && b.opposite == a.name;
}

consteval bool fits(const LinkRow& a, const LinkRow& b) {
  switch (a.kind) {
    case LinkKind::contained:
      return b.kind == LinkKind::container && !b.isMany();
    case LinkKind::container:
      return b.kind == LinkKind::contained;
    case LinkKind::reference:
      return b.kind == LinkKind::hidden;
    case LinkKind::hidden:
      return b.kind == LinkKind::reference;
  }
  return false;
}

consteval auto pairOpposites() {
  std::array<std::uint8_t, kLinks.size()> opposite{};
  for (std::size_t i = 0; i < kLinks.size(); ++i) {
    std::size_t j = 0;
    while (j < kLinks.size() && !isOpposite(kLinks[i], kLinks[j])) ++j;
    if (j == kLinks.size()) throw "a link without its opposite row";
    if (!fits(kLinks[i], kLinks[j])) throw "a link whose two ends do not fit each other";
    opposite[i] = static_cast<std::uint8_t>(j);
  }
  return opposite;
}
inline constexpr auto kOpposite = pairOpposites();

}  // namespace tav
