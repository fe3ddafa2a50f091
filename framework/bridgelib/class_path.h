#pragma once

#include "framework/std/log.h"

/// Appends the file `jarName` of the folder `directory` to a Java class path; returns whether it did. A file
/// that is not there is passed over in silence: which of its archives an importer needs is its own affair.
/// `log` may be null; nothing is reported to it.
TAV_API bool appendClassPathElement(TAVString& classPath, const TAVString& directory,
                                    const TAVString& jarName, TAVLog* log);
