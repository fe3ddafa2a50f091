#pragma once

#include <string>
#include <string_view>

namespace tav {

/// `text` on one line, safe for a terminal: control characters are shown as "\n", "\t" or "\x1b".
std::string printable(std::string_view text);

}  // namespace tav
