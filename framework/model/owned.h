#pragma once

#include <memory>

#include "framework/api.h"
#include "framework/model/class_list.h"

namespace tav {

/// Deletes an object with all that it contains and takes each out of every link that names it. Cost: the
/// links of what goes.
struct TAV_API DestroyTree {
  void operator()(TAVObject* object) const noexcept;
};

/// An object that no model contains yet.
template <class T> using Owned = std::unique_ptr<T, DestroyTree>;

}  // namespace tav
