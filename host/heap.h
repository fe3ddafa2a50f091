#pragma once

#include <string>

namespace host {

/// Says that the process ends after one command, so that what it frees need not go back to the system.
void endAfterOneCommand() noexcept;

/// Makes the heap of a process that ends after one command ready for what is made of a large file: as one
/// range of huge pages, since a system that gives thousands of small ones takes a quarter of the time.
/// Addresses alone are taken; memory comes as it is used. Does nothing where addresses are limited.
void prepareHeapFor(const std::string& path) noexcept;

}  // namespace host
