#pragma once

#include <string>
#include <string_view>

namespace tav {

/// Appends `text` as the value of an XML attribute in double quotes: markup, quotes and line ends escaped,
/// so that a reader gets back the very same text. A character that XML cannot hold, and every byte that is
/// no UTF-8, becomes U+FFFD.
void appendAttributeText(std::string& out, std::string_view text);

}  // namespace tav
