#include "tests/support/checked_import.h"

#include <gtest/gtest.h>

#include <chrono>

#include "bridge/import.h"
#include "framework/std/exception.h"
#include "tests/support/model_laws.h"

namespace tav::test {

namespace {

// Most take milliseconds. What is wrong with one is a cost that grows faster than the input: then it takes
// hours.
constexpr std::chrono::seconds kLongest{60};

struct NoLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

}  // namespace

Imported importFile(const std::filesystem::path& path) {
  NoLog log;
  Imported result;
  const auto start = std::chrono::steady_clock::now();
  try {
    result.model.reset(execAsImport("test", TAVFile(TAVString(path.string())), &log));
  } catch (const TAVException& failure) {
    result.error = failure.getMessage().str();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, kLongest) << path;
  EXPECT_NE(result.model == nullptr, result.error.empty()) << path;
  EXPECT_EQ(result.model ? brokenLaw(*result.model) : "", "") << path;
  if (const std::size_t at = result.error.find(path.string()); at != std::string::npos)
    result.error.replace(at, path.string().size(), "FILE");
  return result;
}

}  // namespace tav::test
