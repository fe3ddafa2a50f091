#pragma once

// The one place where links begin and end. A link is named by the member at the end that the caller
// holds: link<&TAVFeatureMap::sourceFeatures>(map, feature).

#include <utility>

#include "framework/model/collection.h"
#include "framework/model/object.h"
#include "framework/model/rows.h"

namespace tav {

/// The number of a link row.
using LinkNumber = std::uint8_t;

/// The row of a member, given as memberText() writes it.
TAV_API LinkNumber findLink(std::string_view member) noexcept;

template <auto P> inline const LinkNumber linkNumber = findLink(memberText<P>());

TAV_API void linkObjects(LinkNumber row, TAVObject& from, TAVObject& to);
TAV_API void unlinkObjects(LinkNumber row, TAVObject& from, TAVObject& to) noexcept;
/// Takes whatever the single end `row` of `from` points to out of it.
TAV_API void clearLink(LinkNumber row, TAVObject& from) noexcept;
/// `name` when the collection holds no element of that name, otherwise name + separator + N with the
/// smallest N from 2 that is free. The cost does not grow with the number of equal names.
TAV_API TAVString uniqueNameIn(TAVSdkCollection& collection, const TAVString& name, char separator);
/// Takes an object out of its container and gives it to the caller; its other links stay.
TAV_API Owned<TAVObject> takeOut(TAVObject& object) noexcept;

/// Puts a new object under its owner, which deletes it from now on.
template <auto P, class T> T& add(typename MemberOf<P>::Class& owner, Owned<T> object) {
  static_assert(MemberOf<P>::Type::kind == LinkKind::contained && MemberOf<P>::Type::many);
  typename MemberOf<P>::Type::Target& target = *object;
  linkObjects(linkNumber<P>, owner, target);
  return *object.release();
}

/// The same, under a name that is free in the collection.
template <auto P, class T> T& addUnique(typename MemberOf<P>::Class& owner, Owned<T> object, char separator) {
  TAVString name = uniqueNameIn(owner.*P, object->getName(), separator);
  if (name != object->getName()) object->setName(std::move(name));
  return add<P>(owner, std::move(object));
}

/// Lets `from` refer to `to`. A single end that pointed elsewhere lets go of it.
template <auto P> void link(typename MemberOf<P>::Class& from, typename MemberOf<P>::Type::Target& to) {
  static_assert(MemberOf<P>::Type::kind == LinkKind::reference);
  linkObjects(linkNumber<P>, from, to);
}

/// Ends the first link of the row between the two, if there is one.
template <auto P>
void unlink(typename MemberOf<P>::Class& from, typename MemberOf<P>::Type::Target& to) noexcept {
  static_assert(MemberOf<P>::Type::kind == LinkKind::reference);
  unlinkObjects(linkNumber<P>, from, to);
}

template <auto P> void clear(typename MemberOf<P>::Class& from) noexcept {
  static_assert(MemberOf<P>::Type::kind == LinkKind::reference && !MemberOf<P>::Type::many);
  clearLink(linkNumber<P>, from);
}

/// Deletes an object and all that it contains.
inline void destroy(TAVObject& object) noexcept {
  DestroyTree{}(&object);
}

/// Takes an object out of its container; adding it again moves it to the end there.
template <class T> Owned<T> take(T& object) noexcept {
  return Owned<T>(static_cast<T*>(takeOut(object).release()));
}

}  // namespace tav
