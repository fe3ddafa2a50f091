#include "exports/report/report.h"

// The page, which report_page.S holds.
extern "C" const char kXmlaReportPage[];     // NOLINT(*-avoid-c-arrays): a symbol of the assembler
extern "C" const char kXmlaReportPageEnd[];  // NOLINT(*-avoid-c-arrays)

namespace tav {

std::string_view reportPage() noexcept {
  return {kXmlaReportPage, static_cast<std::size_t>(kXmlaReportPageEnd - kXmlaReportPage)};
}

std::string_view reportPlaceholder() noexcept {
  return "@MODEL@";
}

}  // namespace tav
