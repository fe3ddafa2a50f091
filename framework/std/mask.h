#pragma once

#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// `text` with the values of the keys Password and PWD shown as "***" wherever it holds a connection string:
/// where a key, in any letter case, stands at the start of the text, of a line or of a quoted part, or behind
/// a semicolon, and "=" follows. A value is quoted, or goes to the next semicolon or line end. Linear.
TAV_API std::string maskPasswords(std::string_view text);

}  // namespace tav
