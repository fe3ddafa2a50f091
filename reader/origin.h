#pragma once

#include "framework/model/classes/metadata_origin.h"
#include "framework/std/file.h"

namespace tav {

/// The origin of a model that this plug-in reads from `inputFile`.
Owned<TAVMetadataOrigin> describeOrigin(const TAVString& bridgeIdentifier, const TAVFile& inputFile);

}  // namespace tav
