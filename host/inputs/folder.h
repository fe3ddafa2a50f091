#pragma once

#include <string>
#include <vector>

namespace host {

/// The extension of a project's own file.
inline constexpr const char* kProjectExtension = ".dwproj";

/// Whether the file at `path` is called as those of this extension, in any letter case.
bool hasExtension(const std::string& path, const std::string& extension);

/// The definitions that a folder holds itself, in the order of their names: its projects, or the semantic
/// models in it.
std::vector<std::string> definitionsIn(const std::string& folder);

}  // namespace host
