#pragma once

#include <string>
#include <string_view>

namespace tav {

/// Text as Markdown shows it to the letter, on one line and within a table too. Control characters are shown.
std::string markdownCode(std::string_view text);

}  // namespace tav
