#pragma once

#include "framework/details/details.h"
#include "host/message_log.h"
#include "host/reports/report_files.h"

namespace host {

/// Adds a report on a model to the details of the model: its parts, what they show and by what they filter,
/// and as open names what they name and the model does not have.
void addReport(const ReportPlace& report, const TAVModel& model, tav::Details& details, MessageLog& log);

}  // namespace host
