#pragma once

#include "framework/std/string.h"
#include "framework/types/data_store_version.h"

/// The data store that an OLE DB provider reads: by the provider's exact name, ignoring letter case, and SQL
/// Server for every provider that is not known. Never null; lives as long as the library.
TAV_API const TAVDataStoreVersion* findDataStoreByProvider(const TAVString& provider);
