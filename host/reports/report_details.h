#pragma once

#include <vector>

#include "framework/details/details.h"
#include "host/message_log.h"
#include "host/reports/report_files.h"

namespace host {

/// Adds reports on a model to the details of the model: their parts, what they show and by what they filter,
/// and as open names what they name and the model does not have.
void addReports(const std::vector<ReportPlace>& reports, const TAVModel& model, tav::Details& details,
                MessageLog& log);

}  // namespace host
