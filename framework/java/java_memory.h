#pragma once

// How much memory the Java of an importer is given.

#include <cstdint>

#include "framework/api.h"

namespace tav {

/// The heap to ask for, in bytes, for an input of that size: what an importer needs, or a quarter of the
/// machine's memory if that is more, but never all that the machine, or the container, has.
TAV_API std::uint64_t javaHeapFor(std::uint64_t inputSize, std::uint64_t machineMemory);

/// The memory of the machine, or what a container or a limit of the process leaves of it.
std::uint64_t machineMemory();

}  // namespace tav
