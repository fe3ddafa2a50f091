#pragma once

// What the containers of untyped pointers have in common: the objects in the order in which they came, and
// the iterator over them. No container here owns what it is given.

#include <cstdint>
#include <vector>

#include "framework/api.h"

/// The root of all containers.
class TAV_API _TAVContainer {
 public:
  virtual ~_TAVContainer();

 protected:
  _TAVContainer() = default;
  _TAVContainer(const _TAVContainer&) = default;
  _TAVContainer& operator=(const _TAVContainer&) = default;
};

/// A container of untyped pointers that it does not own, walked in the order of adding.
class TAV_API TAVContainer : public virtual _TAVContainer {
 public:
  class Iterator;

  /// Takes every object out. The objects themselves are not touched.
  virtual void empty();

  /// A new iterator before the first object, to be given back to deleteIterator. The flag has no meaning.
  [[nodiscard]] virtual Iterator* newIterator(bool flag) const;
  virtual void deleteIterator(Iterator* iterator) const;

  [[nodiscard]] std::int32_t getCount() const noexcept { return count_; }

 protected:
  TAVContainer() = default;
  TAVContainer(const TAVContainer&) = default;
  TAVContainer& operator=(const TAVContainer&) = default;

  /// Stands in `objects_` where an object was taken out.
  static void* hole() noexcept;

  std::vector<void*> objects_;
  std::int32_t count_ = 0;
};

/// A place in a container: before the first object, or at an object. Adding to the container or emptying it
/// ends the use of its iterators; removing does not.
class TAV_API TAVContainer::Iterator {
 public:
  explicit Iterator(const TAVContainer& container) noexcept : container_(&container) {}

  /// Whether next() has another object to give.
  [[nodiscard]] bool hasNext() const noexcept;
  /// Moves to the next object and gives it; null when there is none.
  void* next() noexcept;
  /// The object that the iterator is at; null before the first one, behind the last and where it was removed.
  [[nodiscard]] void* get() const noexcept;

 private:
  friend class TAVHashtable;
  [[nodiscard]] std::size_t following() const noexcept;

  static constexpr std::size_t kBeforeFirst = static_cast<std::size_t>(-1);
  const TAVContainer* container_;
  std::size_t position_ = kBeforeFirst;
};
