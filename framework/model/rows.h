#pragma once

// What a class says of its members: one row per attribute and one per link end. Saving, loading, export,
// walking, copying and deleting all read these rows and know no class by name.

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <variant>

#include "framework/model/class_list.h"
#include "framework/model/data_store.h"
#include "framework/model/enumerations.h"
#include "framework/model/slot.h"
#include "framework/std/exception.h"

class TAVSdkCollection;

namespace tav {

class OneBase;

/// An attribute's value: a flag, a number, a text (a view into the object), or a data store. Empty text,
/// 0, false and a data store without a name are the defaults; a default is neither saved nor exported.
using Value = std::variant<bool, std::int64_t, std::string_view, TAVDataStore>;

enum class AttributeKind : std::uint8_t { flag, number, text, dataStore };

struct AttributeRow {
  std::string_view name;
  ClassId owner = kNoClass;
  AttributeKind kind = AttributeKind::text;
  Value (*get)(const TAVObject& object) = nullptr;
  /// Stores `value`, which must be of the row's kind. Throws a TAVException for a number that the member
  /// cannot hold or that its enumeration does not know.
  void (*set)(TAVObject& object, const Value& value) = nullptr;
};

struct LinkRow {
  std::string_view name;
  std::string_view opposite;  ///< the name of the other end's row
  std::string_view member;    ///< as the compiler writes it
  ClassId owner = kNoClass;
  ClassId target = kNoClass;
  LinkKind kind = LinkKind::reference;
  OneBase& (*one)(TAVObject& object) = nullptr;            ///< null on a collection
  TAVSdkCollection& (*many)(TAVObject& object) = nullptr;  ///< null on a single end

  [[nodiscard]] constexpr bool isMany() const noexcept { return many != nullptr; }
};

template <class T> struct MemberTraits;
template <class C, class M> struct MemberTraits<M C::*> {
  using Class = C;
  using Type = M;
};
template <auto P> using MemberOf = MemberTraits<decltype(P)>;

/// The member as the compiler writes it: `&TAVFeatureMap::operation`.
template <auto P> constexpr std::string_view memberText() {
  std::string_view text = __PRETTY_FUNCTION__;
  text.remove_prefix(text.find("P = ") + 4);
  return text.substr(0, text.find_first_of(";]"));
}

template <class M> constexpr AttributeKind kindOf() {
  if (std::is_same_v<M, bool>) return AttributeKind::flag;
  if (std::is_same_v<M, TAVDataStore>) return AttributeKind::dataStore;
  if (std::is_integral_v<M> || std::is_base_of_v<EnumerationBase, M>) return AttributeKind::number;
  return AttributeKind::text;
}

template <auto P> Value getAttribute(const TAVObject& object) {
  using M = typename MemberOf<P>::Type;
  const M& member = static_cast<const typename MemberOf<P>::Class&>(object).*P;
  if constexpr (kindOf<M>() == AttributeKind::text)
    return member.view();
  else if constexpr (std::is_base_of_v<EnumerationBase, M>)
    return std::int64_t{member.value()};
  else if constexpr (kindOf<M>() == AttributeKind::number)
    return std::int64_t{member};
  else
    return member;
}

[[noreturn]] TAV_API void failOutOfRange(std::int64_t value, std::string_view member);

template <auto P> void setAttribute(TAVObject& object, const Value& value) {
  using M = typename MemberOf<P>::Type;
  M& member = static_cast<typename MemberOf<P>::Class&>(object).*P;
  if constexpr (kindOf<M>() == AttributeKind::text) {
    member = std::get<std::string_view>(value);
  } else if constexpr (kindOf<M>() == AttributeKind::number) {
    using Number = std::conditional_t<std::is_integral_v<M>, M, int>;
    const std::int64_t number = std::get<std::int64_t>(value);
    if (number < std::numeric_limits<Number>::min() || number > std::numeric_limits<Number>::max())
      failOutOfRange(number, memberText<P>());
    member = M(static_cast<Number>(number));
  } else {
    member = std::get<M>(value);
  }
}

template <auto P> consteval AttributeRow attribute(std::string_view name) {
  using M = MemberOf<P>;
  return {name, classId<typename M::Class>, kindOf<typename M::Type>(), &getAttribute<P>, &setAttribute<P>};
}

template <auto P> auto& endOf(TAVObject& object) {
  return static_cast<typename MemberOf<P>::Class&>(object).*P;
}
template <auto P> OneBase& oneEndOf(TAVObject& object) {
  return endOf<P>(object);
}
template <auto P> TAVSdkCollection& manyEndOf(TAVObject& object) {
  return endOf<P>(object);
}

/// A link end: its name, and the name of the row at the other end. Owner, target, kind and whether it is a
/// collection are what the member's type says.
template <auto P> consteval LinkRow link(std::string_view name, std::string_view opposite) {
  using M = MemberOf<P>;
  using End = typename M::Type;
  LinkRow row{name,     opposite, memberText<P>(), classId<typename M::Class>, classId<typename End::Target>,
              End::kind};
  if constexpr (End::many)
    row.many = &manyEndOf<P>;
  else
    row.one = &oneEndOf<P>;
  return row;
}

/// The rows of class T; a class without rows of its own uses this one.
template <class T> struct Meta {
  static constexpr std::array<AttributeRow, 0> attributes{};
  static constexpr std::array<LinkRow, 0> links{};
};

}  // namespace tav
