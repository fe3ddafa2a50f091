#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/details/kinds.h"
#include "host/reports/field_uses.h"
#include "host/reports/report_files.h"

namespace host {

/// A report, or a page, visual, bookmark, measure or data set of it.
struct ReportPart {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  tav::ObjectKind kind;
  std::size_t owner = kNone;  ///< the place of the part that it belongs to; kNone for the report
  std::string name{};         ///< as people see it
  std::string id{};
  std::string type{};           ///< of a visual: "slicer"
  std::string table{};          ///< of a measure: the table of the model that it is listed in
  std::string text{};           ///< of a measure or data set
  std::string_view language{};  ///< of the text: "dax" or "mdx"
  std::vector<FieldUse> uses{};
};

}  // namespace host
