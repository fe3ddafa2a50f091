#pragma once

#include "framework/std/string.h"

/// The folder of the framework's Java part, `../share/xmla-bridge/java` seen from the folder of the
/// framework's own library, so that an installed tree can be moved. It need not exist. Throws a TAVException
/// when the library's own place cannot be told.
TAV_API TAVString getTAVJavaPath();
