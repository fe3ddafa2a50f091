#pragma once

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// `text` on one line, safe for a terminal: control characters are shown as "\n", "\t" or "\x1b",
/// bidirectional marks and separators of lines as "\u202e".
TAV_API std::string printable(std::string_view text);

}  // namespace tav
