#pragma once

#include "framework/std/string.h"
#include "framework/types/data_store_version.h"

/// The value of a key in an OLE DB connection string, or the empty text. The key is looked for as plain text,
/// ignoring letter case; its value ends at the next ";" and is given without blanks around it, equals signs
/// and double quotes.
TAVString getConnectionStringValue(const TAVString& connectionString, const TAVString& key);

/// The data store that an OLE DB provider reads: by the provider's exact name, ignoring letter case, and SQL
/// Server for every provider that is not known. Never null; lives as long as the library.
const TAVDataStoreVersion* findDataStoreByProvider(const TAVString& provider);
