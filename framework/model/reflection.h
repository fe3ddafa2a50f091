#pragma once

// The rows of a class at run time, for everything that treats all classes alike: saving, loading, export,
// comparison, copying.

#include <span>
#include <string_view>

#include "framework/model/object.h"
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

/// Whether the attribute has its default, which is neither saved nor exported.
TAV_API bool isDefault(const Value& value);

/// A walk through the objects at one end.
class TAV_API EndWalk {
 public:
  EndWalk() = default;
  EndWalk(const LinkRow& row, const TAVObject& object);
  /// The next object, or null behind the last.
  TAVObject* next() noexcept;

 private:
  const Slot* at_ = nullptr;
  const Slot* end_ = nullptr;
};

/// Calls `visit(TAVObject&)` for each object at one end, in order.
template <class F> void forEachAt(const LinkRow& row, const TAVObject& object, F visit) {
  EndWalk walk(row, object);
  while (TAVObject* other = walk.next()) visit(*other);
}

/// A copy of an object with all that it contains. References inside the copied tree lead to the copies,
/// references out of it to the same objects as before.
TAV_API Owned<TAVObject> copyTree(const TAVObject& object);

}  // namespace tav
