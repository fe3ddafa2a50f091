#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The parts of the names of more than one part in an MDX query, in its order, without what members are
/// called by keys or functions: [Date].[Calendar].[Month].&[7].Children has the first three. What the query
/// defines itself is left out.
std::vector<std::vector<std::string>> mdxNames(std::string_view query);

}  // namespace host
