#pragma once

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// The name of a setting for people: "FormatString" is "format string", "KeyColumns.NullProcessing" is "key
/// columns, null processing", "MdxMissingMemberMode" and "MDXMissingMemberMode" begin with "mdx" and "MDX".
/// What is written in other ways, with blanks or as one word, keeps its letters but for the case of the
/// first.
TAV_API std::string settingWords(std::string_view name);

}  // namespace tav
