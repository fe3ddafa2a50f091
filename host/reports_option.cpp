#include "host/reports_option.h"

#include <utility>

namespace host {
namespace {

constexpr const char* kOption = "--reports";

}  // namespace

Option addReports(const CommandParser& parser, std::vector<std::string>& paths) {
  return parser
      .addOption("--reports PATH", paths,
                 "Paginated reports (.rdl) or reports of Power BI on the model, or a folder of "
                 "them, that are\n"
                 "read with it; may be given several times")
      .oneEachTime();
}

void readReports(Input& input, const std::vector<std::string>& paths) {
  if (paths.empty()) return;
  if (input.isSavedModel())
    throw UsageError(kOption,
                     input.name() + " is a saved model: give reports when the definition is imported");
  for (const std::string& path : paths) {
    std::vector<ReportPlace> reports = reportsAt(path);
    if (reports.empty()) throw UsageError(kOption, path + " is no report, and no folder with reports");
    input.addReports(std::move(reports));
  }
}

void checkReports(const std::vector<std::string>& paths, bool severalModels) {
  if (severalModels && !paths.empty())
    throw UsageError(kOption, "reports are on one model: give one definition");
}

}  // namespace host
