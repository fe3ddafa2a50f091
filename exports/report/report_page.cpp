#include "exports/report/report.h"

// The page, which report_page.S holds.
extern "C" const char xmlaReportPage[];     // NOLINT(*-avoid-c-arrays): a symbol of the assembler
extern "C" const char xmlaReportPageEnd[];  // NOLINT(*-avoid-c-arrays)

namespace tav {

std::string_view reportPage() noexcept {
  return {xmlaReportPage, static_cast<std::size_t>(xmlaReportPageEnd - xmlaReportPage)};
}

std::string_view reportPlaceholder() noexcept {
  return "@MODEL@";
}

}  // namespace tav
