#pragma once

#include <filesystem>
#include <string>

namespace tav::test {

/// What an import left behind: the files in the folder for temporary ones, and the processes other than this
/// one whose environment names `folder`, a line each. Processes get some time to end. Empty when all is well.
std::string leftovers(const std::filesystem::path& folder, const std::filesystem::path& temporaryFiles);

}  // namespace tav::test
