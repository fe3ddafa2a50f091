#pragma once

// What the names of files and folders tell of them.

#include <string>

namespace host {

/// The extension of a project's own file.
inline constexpr const char* kProjectExtension = ".dwproj";

/// Whether a file or folder is called as those of this extension, which is in lower case, in any letter case.
bool hasExtension(const std::string& path, const std::string& extension);

}  // namespace host
