#pragma once

#include <string>

#include "exports/formats.h"
#include "framework/model/model.h"

namespace tav {

/// When what a model tells was so, as RFC 3339 in UTC: the environment's SOURCE_DATE_EPOCH where it is set
/// and not empty; otherwise options.inputTime, or the time at which the file options.input was modified; of
/// standard input, "-", the time that the model itself carries, or the beginning of 1970 when it carries
/// none. Throws a TAVException for a SOURCE_DATE_EPOCH that is no time (see getSourceDateEpoch) and
/// "[TAVLINEAGE_F0001] ..." for a file whose time cannot be read.
std::string eventTime(const TAVModel& model, const ExportOptions& options);

}  // namespace tav
