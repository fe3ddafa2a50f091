#pragma once

#include <string>
#include <string_view>

#include "host/inputs/input.h"

namespace host {

/// The SHA-256 of all that is read of a definition, with the name that its surroundings give it, as
/// hexadecimal digits: the same as long as an import would find the same. Empty when something cannot be
/// read, which the import tells.
std::string contentHash(const Input& input);

/// The same of a text.
std::string textHash(std::string_view text);

}  // namespace host
