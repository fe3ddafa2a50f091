#include "report/report.h"

// The pages, which report_page.S holds.
extern "C" const char kXmlaReportPage[];
extern "C" const char kXmlaReportPageEnd[];
extern "C" const char kXmlaEstatePage[];
extern "C" const char kXmlaEstatePageEnd[];

namespace tav {

std::string_view reportPage() noexcept {
  return {kXmlaReportPage, static_cast<std::size_t>(kXmlaReportPageEnd - kXmlaReportPage)};
}

std::string_view estatePage() noexcept {
  return {kXmlaEstatePage, static_cast<std::size_t>(kXmlaEstatePageEnd - kXmlaEstatePage)};
}

std::string_view reportPlaceholder() noexcept {
  return "@MODEL@";
}

}  // namespace tav
