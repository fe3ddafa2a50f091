#pragma once

// The data types of a model: finding, making, and leaving one object of each.

#include "framework/model/classes/base_type.h"
#include "framework/model/classes/derived_type.h"
#include "framework/model/classes/model.h"

namespace tav {

/// The kinds of types that getType tells apart.
enum class TypeKind : std::int32_t { base = 4, derived = 5 };

}  // namespace tav

/// The model's first type of exactly this name and kind, or null.
TAV_API TAVConcreteType* getType(const TAVModel& model, std::string_view name, tav::TypeKind kind);

/// A new base type for one of the framework's type names; null for any other name.
TAV_API tav::Owned<TAVBaseType> createBaseType(const TAVString& name);

/// The physical name of a derived type: its native data type, with its length in brackets when it has one.
TAV_API TAVString buildTypePhysicalName(const TAVDerivedType& type);

/// Leaves one type object per class, name, data type, native data type and length: the model's first.
/// Whatever had one of the others as its type or as its base type has the first one now. Both numbers are
/// reserved: 0. Cost: the model's types and the links of those that go.
TAV_API void factorizeTypes(TAVModel& model, int reserved, int alsoReserved);

namespace tav {

/// The model's base type of this name, made when there is none. A name that the framework does not know gives
/// the type "undefined".
TAV_API TAVConcreteType& fetchBaseType(TAVModel& model, const TAVString& name);

/// The model's derived type for one of the framework's type names, with a base type behind it, made when
/// there is none; then `nativeDataType` is the source's text for it. With a length (in characters; 0 is none)
/// it is a type of its own whose name ends in the length: VARCHAR(50).
TAV_API TAVDerivedType& fetchDerivedType(TAVModel& model, std::string_view typeName,
                                         std::string_view nativeDataType, std::int32_t length = 0);

}  // namespace tav
