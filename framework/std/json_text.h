#pragma once

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// Appends `value` to `text` as a JSON string, quotes included. UTF-8 stays as it is; a byte that is none
/// becomes U+FFFD.
TAV_API void appendJsonText(std::string& text, std::string_view value);

}  // namespace tav
