#pragma once

#include <cstdint>
#include <ostream>

#include "framework/details/details.h"
#include "framework/serialization/passwords.h"

namespace tav {

/// Writes details as a content of a saved document whose model was numbered from 1 to `objects` (see
/// Numbering). The items that only the details have get the numbers behind.
void writeDetails(const Details& details, std::uint32_t objects, std::ostream& out, Passwords passwords);

}  // namespace tav
