#pragma once

// What a model says about its own making: where it comes from, and when it was made.

#include "framework/model/classes/metadata_origin.h"
#include "framework/model/classes/store_model.h"
#include "framework/std/option.h"

namespace tav {

/// The tool whose definitions a bridge reads, and its maker, as the bridge's specification names them.
struct OriginTool {
  TAVString toolName;
  TAVString vendorName;
};

}  // namespace tav

/// A new origin record: `name` is the bridge identifier, `version` the bridge's build version.
TAV_API tav::Owned<TAVMetadataOrigin> generateMetadataOrigin(const tav::OriginTool& tool,
                                                             const TAVString& name, const TAVString& version);

/// Stamps the model with the time, as ISO 8601 in UTC: "2026-03-08T10:00:00Z". It is the number of seconds
/// since 1970 in the environment's SOURCE_DATE_EPOCH where that is set and not empty, so that a file can be
/// made a second time byte for byte; otherwise the current time. No option has a say in it. Throws a
/// TAVException
/// "[TAVBRIDGE_F0011] ..." when SOURCE_DATE_EPOCH is no such number or lies beyond the year 9999.
TAV_API void setModelModificationTime(TAVStoreModel& model, const TAVOptionList& options);
