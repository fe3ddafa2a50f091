#pragma once

#include <span>

namespace tav {

/// Fills in the character of each of the 256 bytes in an encoding that the C library knows by this name, -1
/// for a byte that stands for none. False when the name is unknown or the encoding is not of one byte a
/// character.
bool mapSingleByteEncoding(const char* name, std::span<int, 256> characters);

}  // namespace tav
