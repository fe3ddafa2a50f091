#pragma once

// The root of the class tree: what every model object is and can be asked.

#include <cstdint>
#include <string_view>
#include <type_traits>

#include "framework/api.h"
#include "framework/model/class_list.h"
#include "framework/model/owned.h"
#include "framework/std/string.h"

namespace tav {
class Numbering;
struct LinkAccess;
}  // namespace tav
class TAVTraversalOperation;

/// An object of the metadata model. It belongs to the object that contains it, or, while it is not placed
/// yet, to a tav::Owned.
class TAV_API TAV_Object {
 public:
  TAV_Object(const TAV_Object&) = delete;
  TAV_Object& operator=(const TAV_Object&) = delete;
  virtual ~TAV_Object();

  [[nodiscard]] tav::ClassId classId() const noexcept { return classId_; }
  [[nodiscard]] TAVElementType getElementType() const noexcept { return tav::kClassRanges[classId_].code; }
  /// The class's name, as saved models and exports write it.
  [[nodiscard]] std::string_view getMetaClass() const noexcept;
  [[nodiscard]] bool isInstanceOf(TAVElementType code) const noexcept {
    const tav::ClassId base = tav::classOfCode(code);
    return base != tav::kNoClass && tav::derives(classId_, base);
  }

 protected:
  explicit TAV_Object(tav::ClassId id) noexcept : classId_(id) {}

 private:
  friend class tav::Numbering;
  friend struct tav::LinkAccess;
  tav::ClassId classId_;
  bool doomed_ = false;               // set while the tree that it is part of is being deleted
  mutable std::uint32_t number_ = 0;  // scratch for whoever writes the model out
};

class TAV_API TAVObject : public TAV_Object {
 public:
  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }
  /// Renames the object; the collections that list it find it under the new name at once. Cost: its links.
  void setName(TAVString name);

  /// The object that contains this one, or null.
  [[nodiscard]] TAVObject* getParent() const;
  /// The model that this object is part of, itself when it is one, or null.
  [[nodiscard]] TAVModel* getRootModel();
  /// The names from below the model down to this object, joined by "/", with a "/" in front when
  /// `fromRoot`. The model's own path is "/", or empty.
  [[nodiscard]] TAVString getPath(bool fromRoot) const;
  /// Visits this object and all that it contains, each before its parts, in the order in which they are
  /// saved. The operation must not remove objects. Depth costs no stack.
  void depthTraversal(TAVTraversalOperation& operation);

 protected:
  using TAV_Object::TAV_Object;

 private:
  TAVString name_;
};

namespace tav {

/// `object` as a T, or null when it is none (or null).
template <class T, class O> auto as(O* object) noexcept {
  using Result = std::conditional_t<std::is_const_v<O>, const T, T>;
  return object && derives(object->classId(), classId<T>) ? static_cast<Result*>(object) : nullptr;
}

template <class T> bool is(const TAV_Object& object) noexcept {
  return derives(object.classId(), classId<T>);
}

/// A blank object of a class that has objects of its own. The framework makes the objects of all plug-ins:
/// what is virtual about one lies where it was made, and must stay loaded as long as the object.
TAV_API Owned<TAVObject> makeObject(ClassId id);

/// What makeObject does for one class; to be called in the framework alone.
template <class T> Owned<TAVObject> makeObjectHere() {
  return Owned<TAVObject>(new T);
}

/// Makes an object that is not placed yet. The name is given before placing: that costs least.
template <class T> Owned<T> make(TAVString name = {}) {
  Owned<T> object(static_cast<T*>(makeObject(classId<T>).release()));
  if (!name.empty()) object->setName(std::move(name));
  return object;
}

/// The numbers that a writer gives to the objects of one model; the last writer's numbers count.
class Numbering {
 public:
  static void set(const TAV_Object& object, std::uint32_t number) noexcept { object.number_ = number; }
  static std::uint32_t get(const TAV_Object& object) noexcept { return object.number_; }
};

}  // namespace tav
