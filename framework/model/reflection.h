#pragma once

// Objects treated all alike, whatever their class: saving, loading, export, comparison, copying.

#include "framework/model/class_info.h"
#include "framework/model/end_walk.h"
#include "framework/model/object.h"

namespace tav {

/// Whether the attribute has its default, which is neither saved nor exported.
TAV_API bool isDefault(const Value& value);

/// A copy of an object with all that it contains. References inside the copied tree lead to the copies,
/// references out of it to the same objects as before.
TAV_API Owned<TAVObject> copyTree(const TAVObject& object);

}  // namespace tav
