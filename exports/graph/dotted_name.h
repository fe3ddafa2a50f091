#pragma once

// Names of several parts: `dbo.[Fact Sales].Amount`, `[Measures].[Nights]`, `'Order Date'[Month]`.

#include <string>
#include <string_view>
#include <vector>

namespace tav {

/// The parts of a name without their brackets or quotes, a doubled closing one made single. Parts are
/// separated by dots outside of them; a part in brackets also ends the one before it. Empty parts are kept:
/// `db..table` has three.
std::vector<std::string> splitDottedName(std::string_view name);

/// Adds a part behind a dot, in brackets unless it is made of letters, digits and underscores alone.
void appendSqlPart(std::string& name, std::string_view part);

/// `[part]`, closing brackets doubled.
std::string bracketed(std::string_view part);
/// `'part'`, quotes doubled.
std::string quoted(std::string_view part);

}  // namespace tav
