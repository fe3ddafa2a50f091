#pragma once

#include <string>
#include <vector>

#include "host/message_log.h"
#include "host/reports/report_parts.h"

namespace host {

/// The parts of a paginated report (.rdl): the report, and its data sets whose queries are in MDX or DAX. One
/// that is broken is the report alone and an error in `log`.
std::vector<ReportPart> readPaginatedReport(const ReportPlace& report, MessageLog& log);

}  // namespace host
