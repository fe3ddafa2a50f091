#pragma once

// The ends of links between model objects: single ends and collections. Every link has two ends that know
// each other's place, so nothing is ever searched for when one of them goes. Everything here reads; only
// link.cpp changes ends.

#include <cstdint>
#include <memory>
#include <string_view>

#include "framework/model/slots.h"

namespace tav {

struct LinkAccess;

}  // namespace tav

/// A collection of links in insertion order; one that was never filled costs a pointer. Objects may be
/// added during a walk; whoever wants to remove some collects them first.
class TAV_API TAVSdkCollection {
 public:
  TAVSdkCollection() = default;
  TAVSdkCollection(const TAVSdkCollection&) = delete;
  TAVSdkCollection& operator=(const TAVSdkCollection&) = delete;

  [[nodiscard]] std::int32_t getCount() const noexcept {
    return data_ ? static_cast<std::int32_t>(data_->live) : 0;
  }
  [[nodiscard]] bool empty() const noexcept { return getCount() == 0; }

  /// The object at `index`, from 0 in insertion order, or null outside the collection. Cost: the logarithm of
  /// the size once something was removed, constant before.
  TAVObject* operator[](std::int32_t index) const { return at(index, 0); }

  /// Count and place among the objects of class `kind` and its subclasses alone, at the same cost.
  [[nodiscard]] std::int32_t getCount(tav::ClassId kind) const;
  [[nodiscard]] TAVObject* at(std::int32_t index, tav::ClassId kind) const;

 protected:
  ~TAVSdkCollection() = default;
  friend struct tav::LinkAccess;
  std::unique_ptr<tav::ManyData> data_;
};

/// A collection whose objects are found by name and asked for membership at a cost that does not grow.
class TAV_API TAVObjectCollection : public TAVSdkCollection {
 public:
  /// The first object of exactly this name, or null.
  [[nodiscard]] TAVObject* get(std::string_view name) const { return get(name, 0); }
  /// The first object of exactly this name that is of class `kind` or a subclass, or null.
  [[nodiscard]] TAVObject* get(std::string_view name, tav::ClassId kind) const;
  [[nodiscard]] bool contains(const TAVObject& object) const;

 protected:
  ~TAVObjectCollection() = default;
};

namespace tav {

class OneBase {
 public:
  OneBase() = default;
  OneBase(const OneBase&) = delete;
  OneBase& operator=(const OneBase&) = delete;

 protected:
  ~OneBase() = default;
  friend struct LinkAccess;
  Slot slot_;
};

/// A single end: points to one object or to none.
template <class T, LinkKind Kind> class One : public OneBase {
 public:
  using Target = T;
  static constexpr LinkKind kind = Kind;
  static constexpr bool many = false;

  [[nodiscard]] T* get() const noexcept { return static_cast<T*>(slot_.other); }
  T* operator->() const noexcept { return get(); }
  T& operator*() const noexcept { return *get(); }
  explicit operator bool() const noexcept { return slot_.other != nullptr; }
};

/// A collection of T; `for (T& object : collection)` walks it in insertion order.
template <class T, LinkKind Kind> class Many : public TAVObjectCollection {
 public:
  using Target = T;
  static constexpr LinkKind kind = Kind;
  static constexpr bool many = true;

  /// Walks by place, not by pointer: what is added during the walk is visited too.
  class Iterator {
   public:
    Iterator(const ManyData* data, std::size_t place) : data_(data), place_(place) { skipHoles(); }
    T& operator*() const { return *static_cast<T*>(data_->slots[place_].other); }
    Iterator& operator++() {
      ++place_;
      skipHoles();
      return *this;
    }
    bool operator!=(std::nullptr_t /*end*/) const { return data_ && place_ < data_->slots.size(); }

   private:
    void skipHoles() {
      while (data_ && place_ < data_->slots.size() && !data_->slots[place_].other) ++place_;
    }
    const ManyData* data_;
    std::size_t place_;
  };

  [[nodiscard]] Iterator begin() const { return {data_.get(), data_ ? data_->front : 0}; }
  [[nodiscard]] std::nullptr_t end() const { return nullptr; }

  T* operator[](std::int32_t index) const { return static_cast<T*>(TAVSdkCollection::operator[](index)); }
  [[nodiscard]] T* first() const {
    const Iterator i = begin();
    return i != nullptr ? &*i : nullptr;
  }
  using TAVObjectCollection::get;
  [[nodiscard]] T* get(std::string_view name) const {
    return static_cast<T*>(TAVObjectCollection::get(name, 0));
  }
};

template <class T> using Parts = Many<T, LinkKind::contained>;     ///< objects that this one owns
template <class T> using Container = One<T, LinkKind::container>;  ///< the object that owns this one
template <class T> using Reference = One<T, LinkKind::reference>;
template <class T> using References = Many<T, LinkKind::reference>;
template <class T> using BackReference = One<T, LinkKind::hidden>;
template <class T> using BackReferences = Many<T, LinkKind::hidden>;

}  // namespace tav
