#pragma once

// The rows of all classes at run time, for everything that treats all classes alike. Here they are only
// declared: class_table.cpp alone knows every class, and so the rest of this folder need not.

#include <span>
#include <string_view>

#include "framework/model/owned.h"
#include "framework/model/rows.h"

namespace tav {

struct LinkInfo {
  const LinkRow* row = nullptr;
  std::uint8_t number = 0;    ///< for linkObjects
  std::uint8_t opposite = 0;  ///< the number of the other end's row
};

struct ClassInfo {
  std::string_view name;
  ClassId id = kNoClass;
  /// Inherited rows first, each class's own in the order in which it lists them.
  std::span<const AttributeRow* const> attributes;
  std::span<const LinkInfo> links;
  /// Those of the links that hold what an object owns: all that a walk through a tree has to look at.
  std::span<const LinkInfo> parts;
  /// Makes a blank object; null on a class that has no objects of its own.
  Owned<TAVObject> (*create)() = nullptr;
};

TAV_API const ClassInfo& classInfo(ClassId id) noexcept;
/// The class of this name, or null.
TAV_API const ClassInfo* findClass(std::string_view name) noexcept;

}  // namespace tav
