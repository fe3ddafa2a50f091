#pragma once

#include <cstdint>

namespace tav {

/// What becomes of passwords in texts that are written (see framework/std/mask.h).
enum class Passwords : std::uint8_t { kept, masked };

}  // namespace tav
