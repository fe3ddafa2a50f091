#pragma once

// The framework's own type names.

#include <algorithm>
#include <array>
#include <string_view>

#include "framework/api.h"
#include "framework/std/string.h"

namespace tav {

/// The type of what no other name fits.
inline constexpr std::string_view kUndefinedType = "undefined";

/// Every type name that the framework knows.
inline constexpr std::array<std::string_view, 16> kTypeNames{
    "BOOLEAN", "TINYINT", "SMALLINT", "INTEGER",   "BIGINT", "REAL", "DOUBLE",    "DECIMAL",
    "CHAR",    "VARCHAR", "BINARY",   "VARBINARY", "DATE",   "TIME", "TIMESTAMP", kUndefinedType};

/// Whether `name` is one of them, to the letter.
TAV_API bool isTypeName(std::string_view name) noexcept;

/// A type name of a source, and the framework's name for it.
struct TypeNameRow {
  std::string_view native;
  std::string_view name;
};

/// Orders native names, the letters A to Z ignoring their case.
constexpr bool comesBefore(std::string_view a, std::string_view b) noexcept {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
    return static_cast<unsigned char>(foldCase(left)) < static_cast<unsigned char>(foldCase(right));
  });
}

/// Whether a table of names can be searched.
template <std::size_t N> consteval bool isInOrder(const std::array<TypeNameRow, N>& rows) {
  return std::is_sorted(rows.begin(), rows.end(),
                        [](const auto& a, const auto& b) { return comesBefore(a.native, b.native); });
}

}  // namespace tav

/// The name of the logical type that stands behind a type name: the same name.
TAV_API TAVString getDefaultLogicalName(const TAVString& typeName);
