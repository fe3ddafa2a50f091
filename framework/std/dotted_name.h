#pragma once

// Names of several parts: `dbo.[Fact Sales].Amount`, `[Measures].[Nights]`, `'Order Date'[Month]`,
// `[Date].[Year].&[2009]`.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api.h"

namespace tav {

/// The parts of a name without their brackets or quotes ([], "", '', ``), a doubled closing one made single.
/// Parts are separated by dots outside of them, blanks around a part are no part of it; a part in brackets
/// also ends the one before it. Empty parts are kept: `db..table` has three.
TAV_API std::vector<std::string> splitDottedName(std::string_view name);

/// The text of one part as it is written, without its brackets or quotes.
TAV_API std::string unquotedPart(std::string_view part);

/// The length of the first part of a reference as it is written, quotes and keys (`&[2009]`) included: the
/// dot behind it, or the reference's end.
TAV_API std::size_t namePartLength(std::string_view reference) noexcept;

/// The parts as SQL writes them: joined by dots, each in brackets unless it is a plain word, which begins
/// with a letter, `_` or `#`.
TAV_API std::string joinDottedName(const std::vector<std::string>& parts);
/// Adds one more part; an empty one stays empty.
TAV_API void appendDottedPart(std::string& name, std::string_view part);

/// `[part]`, closing brackets doubled.
TAV_API std::string bracketed(std::string_view part);
/// `'part'`, quotes doubled.
TAV_API std::string singleQuoted(std::string_view part);

}  // namespace tav
