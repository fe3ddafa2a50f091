#include "report/report.h"

// The page, which report_page.S holds.
extern "C" const char kXmlaReportPage[];
extern "C" const char kXmlaReportPageEnd[];

namespace tav {

std::string_view reportPage() noexcept {
  return {kXmlaReportPage, static_cast<std::size_t>(kXmlaReportPageEnd - kXmlaReportPage)};
}

std::string_view reportPlaceholder() noexcept {
  return "@MODEL@";
}

}  // namespace tav
