#pragma once

// Reports of Power BI as they are kept in files, in the older form (one file for all) and the newer one (a
// file for each page and visual).

#include <vector>

#include "host/message_log.h"
#include "host/reports/report_parts.h"

namespace host {

/// The parts of a report that name something of the model, owners before what they own; the report is the
/// first and always there. What is missing or broken is left out and is an error in `log`.
std::vector<ReportPart> readReport(const ReportPlace& report, MessageLog& log);

}  // namespace host
