#pragma once

// One import, in three steps: which kind of definition a file holds, a model for it, and the reading.
//
// A model may outlive the plug-in. Nothing in it points into the plug-in or into the definition: its objects
// are made by libtav_framework, which must stay loaded until the model is deleted, and its texts are its own.

#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"

/// Imports a file by its content: one whose first character other than white space is "{", or whose first
/// line is TMDL, holds a tabular definition, any other an XML one. A folder is a tabular definition in TMDL.
/// The caller owns the model; null when the import gave none. Throws a TAVException when the file cannot be
/// read.
TAV_API TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log);
/// The same with the kind given: `tabular` for a tabular definition, which the Java importer reads.
TAV_API TAVStoreModel* execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVLog* log,
                                    bool tabular);
/// Stamps `model` and fills it from an XML definition. Always true. What ends the import half-way, an
/// exception of the log included, leaves in the model what was read so far, without the definition's IDs.
TAV_API bool execAsImport(const TAVString& bridgeIdentifier, TAVFile inputFile, TAVStoreModel* model,
                          TAVLog* log);
