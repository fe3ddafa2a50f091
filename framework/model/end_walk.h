#pragma once

#include "framework/model/rows.h"

namespace tav {

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

}  // namespace tav
