#pragma once

// What a model says about its own making: where it comes from, and when it was made.

#include <cstdint>
#include <optional>
#include <string>

#include "framework/model/classes/metadata_origin.h"
#include "framework/model/classes/store_model.h"
#include "framework/std/option.h"

namespace tav {

/// The tool whose definitions a bridge reads, and its maker, as the bridge's specification names them.
struct OriginTool {
  TAVString toolName;
  TAVString vendorName;
};

/// The number of seconds since 1970 in the environment's SOURCE_DATE_EPOCH, where that is set and not empty.
/// Throws a TAVException "[TAVBRIDGE_F0011] ..." when it is no such number or lies beyond the year 9999.
TAV_API std::optional<std::int64_t> getSourceDateEpoch();
/// A time in seconds since 1970 as ISO 8601 in UTC: "2026-03-08T10:00:00Z".
TAV_API std::string isoTime(std::int64_t seconds);

}  // namespace tav

/// A new origin record: `name` is the bridge identifier, `version` the bridge's build version.
TAV_API tav::Owned<TAVMetadataOrigin> generateMetadataOrigin(const tav::OriginTool& tool,
                                                             const TAVString& name, const TAVString& version);

/// Stamps the model with the time (see tav::isoTime): that of the environment's SOURCE_DATE_EPOCH where there
/// is one, so that a file can be made a second time byte for byte; otherwise the current time. No option has
/// a say in it.
TAV_API void setModelModificationTime(TAVStoreModel& model, const TAVOptionList& options);
