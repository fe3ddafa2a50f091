#pragma once

// How names of tables and columns become names of XML, and back.

#include <string>
#include <string_view>

namespace tav {

/// `text` with every character that an XML name cannot hold as _xHHHH_, above U+FFFF as _xHHHHHHHH_. Bytes
/// that are no UTF-8 count as U+FFFD.
std::string encodeName(std::string_view text);

/// `name` with every _xHHHH_ and _xHHHHHHHH_ as the character that it stands for, unless XML has none of that
/// number. The digits may be small letters.
std::string decodeName(std::string_view name);

}  // namespace tav
