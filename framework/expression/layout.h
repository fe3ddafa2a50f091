#pragma once

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// The text without comments, and with one blank at most between what else stands in it: two texts of which
/// this is equal differ in layout alone. Strings and quoted names keep theirs. `language` is "mdx", "dax",
/// "sql" or "m"; a text in another one is given as it is. Where it cannot be told whether a blank means
/// something it stays. Linear.
TAV_API std::string withoutLayout(std::string_view text, std::string_view language);

}  // namespace tav
