#pragma once

#include "framework/std/container.h"

/// An ordered list of untyped pointers that it does not own; a copy refers to the same objects.
class TAV_API TAVVector : public TAVContainer {
 public:
  TAVVector() = default;
  TAVVector(const TAVVector& other) = default;
  TAVVector& operator=(const TAVVector& other) = default;
  ~TAVVector() override;

  /// Appends. The flag has no meaning, and the iterator, which may be null, is left as it is.
  void add(void* object, bool flag, Iterator* iterator);

  /// The object at `index`, from 0; null when there is none.
  void* operator[](std::int32_t index) const noexcept {
    return index < 0 || index >= getCount() ? nullptr : objects_[static_cast<std::size_t>(index)];
  }

  [[nodiscard]] auto begin() const noexcept { return objects_.begin(); }
  [[nodiscard]] auto end() const noexcept { return objects_.end(); }
};
