#pragma once

#include <functional>
#include <string>

#include "tests/support/corpus.h"

namespace tav::test {

/// Runs shell commands in a new folder, which `prepare` fills first, with the program in the path. Gives what
/// they wrote to standard output, then to standard error, and the last command's exit code.
std::string runCommands(const std::string& commands,
                        const std::function<void(const TemporaryFolder& folder)>& prepare);

}  // namespace tav::test
