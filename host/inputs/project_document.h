#pragma once

#include "host/inputs/memory_file.h"
#include "host/inputs/project.h"

namespace host {

/// Puts the files of a project together into the document that a build would make of them, one file at a
/// time. What is missing or broken is left out and is an error in `log`.
MemoryFile assembleProject(const Project& project, MessageLog& log);

}  // namespace host
