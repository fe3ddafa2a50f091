#pragma once

// Look-ups by the IDs of a definition. Where an ID repeats, the first object stays, as a walk from the front
// would find it; an empty ID is a key like any other.

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "framework/std/string.h"

namespace tav {

/// Objects by one or more IDs that belong together, for example view, table and column. It keeps its own copy
/// of the IDs, so that clearing them in the objects does not disturb it.
template <class T> class IdIndex {
 public:
  /// Gives `object` the IDs, unless an earlier object has them.
  template <class... Ids> void add(T& object, const Ids&... ids) {
    objects_.try_emplace(keyOf(ids...), &object);
  }
  /// The first object that was given exactly these IDs, or null.
  template <class... Ids> [[nodiscard]] T* find(const Ids&... ids) const {
    const auto found = objects_.find(keyOf(ids...));
    return found == objects_.end() ? nullptr : found->second;
  }
  /// Costs what was added since the last time: a plain clear() would pass over all the room that the most
  /// that there ever was had taken.
  void clear() { objects_ = std::unordered_map<std::string, T*>(); }

 private:
  template <class... Ids> static std::string keyOf(const Ids&... ids) {
    std::string key;
    key.reserve((std::string_view(ids).size() + ...) + sizeof...(ids));
    // No XML document can hold a NUL, so joined IDs are equal only when each of them is.
    (key.append(std::string_view(ids)).push_back('\0'), ...);
    return key;
  }

  std::unordered_map<std::string, T*> objects_;
};

}  // namespace tav
