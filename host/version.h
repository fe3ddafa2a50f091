#pragma once

#include <string>

namespace host {

/// What `--version` tells, for reports of faults: the program's version, how it was built, and the libraries
/// that it runs with, each with the version that is loaded; of those that are headers alone, the one that it
/// was built with. No line end behind the last line.
std::string versionText();

}  // namespace host
