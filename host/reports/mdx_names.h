#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Whether a query is in MDX and not in SQL, which begins alike: it says what goes on which axis.
bool isMdxQuery(std::string_view query);

/// The parts of the names of more than one part in an MDX query, in its order, without what members are
/// called by keys or functions: [Date].[Calendar].[Month].&[7].Children has the first three. What the query
/// defines itself is left out; what stands in the quotes of a definition is read like the rest.
std::vector<std::vector<std::string>> mdxNames(std::string_view query);

}  // namespace host
