#pragma once

#include "framework/std/log.h"
#include "framework/std/option.h"

/// Tests the files that the options name for reading. Whatever is wrong with one is an ERROR in `log` that
/// names the file, and makes the result false: none is given although the option is mandatory, it does not
/// exist, it is no regular file (with `acceptFolders` a folder will do), it cannot be read, or it is empty. A
/// file whose extension the option does not list, letter case ignored, is a WARNING.
TAV_API bool testRequiredInputFiles(const TAVOptionList& options, TAVLog& log, bool acceptFolders);
