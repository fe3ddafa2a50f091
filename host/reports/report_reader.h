#pragma once

// Reports of Power BI as they are kept in files, in the older form (one file for all) and the newer one (a
// file for each page and visual).

#include <string>
#include <vector>

#include "framework/details/kinds.h"
#include "host/message_log.h"
#include "host/reports/field_uses.h"
#include "host/reports/report_files.h"

namespace host {

/// A report, or a page, visual, bookmark or measure of it.
struct ReportPart {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  tav::ObjectKind kind;
  std::size_t owner;  ///< the place of the part that it belongs to; kNone for the report
  std::string name;   ///< as people see it
  std::string id;
  std::string type;   ///< of a visual: "slicer"
  std::string table;  ///< of a measure: the table of the model that it is listed in
  std::string text;   ///< of a measure, in DAX
  std::vector<FieldUse> uses;
};

/// The parts of a report that name something of the model, owners before what they own; the report is the
/// first and always there. What is missing or broken is left out and is an error in `log`.
std::vector<ReportPart> readReport(const ReportPlace& report, MessageLog& log);

}  // namespace host
