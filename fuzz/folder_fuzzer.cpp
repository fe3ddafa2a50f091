// Any files in a folder are projects, semantic models and reports: what of them can be read is, and the
// document that a project makes comes to a model that keeps the laws.

#include <cstdint>

#include "bridge/import.h"
#include "framework/model/owned.h"
#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "host/estate_plan.h"
#include "host/inputs/input.h"
#include "host/reports/report_reader.h"
#include "tests/support/model_laws.h"
#include "tests/support/temporary_folder.h"

using tav::fuzz::require;

namespace {

void importProject(const host::Input& input, host::MessageLog& log) {
  const tav::Owned<TAVStoreModel> model(execAsImport("fuzz", TAVFile(TAVString(input.path())), &log, false));
  const std::string broken = tav::test::brokenLaw(*model);
  require(broken.empty(), broken.c_str());
}

void readReports(const std::vector<host::ReportPlace>& reports, host::MessageLog& log) {
  for (const host::ReportPlace& report : reports)
    require(!host::readReport(report, log).empty(), "a report is lost");
}

void readDefinition(const std::string& path, host::MessageLog& log) {
  try {
    const host::Input input = host::openInput(path, log);
    readReports(input.reports(), log);
    if (input.isInMemory() && path.ends_with(".dwproj")) importProject(input, log);
  } catch (const TAVException& failure) {
    require(failure.getMessage().startsWith("[", true), failure.what());
  }
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tav::test::TemporaryFolder folder;
  folder.writeFiles({reinterpret_cast<const char*>(data), size});
  host::MessageLog log;
  log.receiver = [](const std::string& /*file*/, const TAVLogEvent& /*event*/) {};
  for (const std::string& definition : host::planInputs({folder.path().string()}, log).definitions)
    readDefinition(definition, log);
  readReports(host::reportsAt(folder.path().string()), log);
  return 0;
}
