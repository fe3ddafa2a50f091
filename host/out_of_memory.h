#pragma once

// What the program does when there is no memory, not even to say so.

namespace host {

/// Says on standard error that memory has run out, in the format that was asked for. Takes no memory.
void tellOutOfMemory(bool json) noexcept;

/// From now on the program ends with this code when memory runs out in a destructor, where nothing can catch
/// it.
void exitWithWhenOutOfMemory(int code) noexcept;

}  // namespace host
