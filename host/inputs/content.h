#pragma once

// What the beginning of a file shows of what it is.

#include <string>
#include <string_view>

#include "host/inputs/file_text.h"

namespace host {

/// The first bytes of a file in UTF-8.
FileText readBeginning(const std::string& path);

/// Whether it is the list of files of a multidimensional project.
bool isProject(std::string_view beginning);

/// What something is that is surely no definition, and what to do, as one sentence; empty for what may be
/// one.
std::string foreignContent(std::string_view beginning, const std::string& path);

/// Whether it is to be taken for a definition among other files: by its content or, where that cannot be
/// read, by its extension.
bool isDefinition(const std::string& path);

}  // namespace host
