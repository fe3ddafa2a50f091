// Any bytes are a container that holds a definition, or not, or one exception that names it; and a report
// whose parts lie in each other.

#include <cstdint>

#include "framework/std/exception.h"
#include "fuzz/require.h"
#include "host/inputs/container.h"
#include "host/inputs/memory_file.h"
#include "host/reports/report_reader.h"

using tav::fuzz::require;

namespace {

void readDefinition(const std::string& path) {
  try {
    host::readContainer(path, "fuzz");
  } catch (const TAVException& failure) {
    require(failure.getMessage().startsWith("[XMLABRIDGE_F0046] fuzz:", true), failure.what());
  }
}

void readParts(const std::string& path) {
  host::MessageLog log;
  log.receiver = [](const std::string& /*file*/, const TAVLogEvent& /*event*/) {};
  const std::vector<host::ReportPart> parts = host::readReport({path, "fuzz", true}, log);
  require(!parts.empty() && parts.front().owner == host::ReportPart::kNone, "no report comes first");
  for (std::size_t i = 1; i < parts.size(); ++i)
    require(parts[i].owner < i, "a part comes before what it belongs to");
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const host::MemoryFile file("fuzz");
  file.write({reinterpret_cast<const char*>(data), size});
  readDefinition(file.path());
  readParts(file.path());
  return 0;
}
