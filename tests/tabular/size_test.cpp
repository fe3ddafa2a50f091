// What large definitions take: memory in proportion to their size, and time in proportion to what they hold.

#include <gtest/gtest.h>

#include <fstream>

#include "benchmarks/definition.h"
#include "tests/support/timing.h"
#include "tests/tabular/importer_run.h"

namespace {

using tav::test::ImporterCost;
using tav::test::measureImporter;

constexpr std::uint64_t kMegabyte = 1'000'000;
/// Far more than is needed, and far less than work with the square of a number takes.
constexpr double kMostSeconds = 5;
constexpr double kLargestGrowth = 12;

template <class Write> std::string writtenTo(const tav::test::TemporaryFolder& folder, Write write) {
  std::string path = folder.path() / "definition.bim";
  std::ofstream out(path, std::ios::binary);
  write(out);
  return path;
}

double secondsFor(const std::string& path, std::uint64_t megabytes, bool details = false) {
  const ImporterCost cost = measureImporter(path, megabytes, details);
  EXPECT_EQ(cost.exitCode, 0) << cost.errors;
  return cost.seconds;
}

/// A definition of 70 MB is imported with 1 GB; Java itself, whose share does not shrink, needs a little of
/// it.
TEST(TabularSize, ALargeDefinitionFitsIntoItsHeap) {
  const tav::test::TemporaryFolder folder;
  const std::string path =
      writtenTo(folder, [](std::ostream& out) { tav::bench::writeTabular(out, 7 * kMegabyte, 1); });
  EXPECT_TRUE(tav::test::takesAtMost([&] { return secondsFor(path, 100); }, kMostSeconds));
}

TEST(TabularSize, ADefinitionThatDoesNotFitIsToldOf) {
  const tav::test::TemporaryFolder folder;
  const std::string path =
      writtenTo(folder, [](std::ostream& out) { tav::bench::writeTabular(out, 7 * kMegabyte, 1); });
  const ImporterCost cost = measureImporter(path, 20);
  EXPECT_EQ(cost.exitCode, 1);
  // 6,874,842 bytes, 14 times that and 64 MB. The collector keeps a part of the heap for itself.
  EXPECT_EQ(cost.errors, "[TAVTAB_F0004] " + path +
                             ": the definition of 7 MB does not fit into Java's heap of 19 MB;"
                             " set JDK_JAVA_OPTIONS to -Xmx156m\n");
}

// Each fault is told with its place in the one long line.
TEST(TabularSize, FaultsOfOneExpressionTakeTimeInProportion) {
  const tav::test::TemporaryFolder folder;
  const std::string path = writtenTo(folder, [](std::ostream& out) {
    out << R"({"name": "M", "model": {"tables": [{"name": "T", "measures": [{"name": "m", "expression": ")";
    for (int i = 0; i < 200'000; ++i) out << "a + ";
    out << R"("}]}]}})";
  });
  EXPECT_TRUE(tav::test::takesAtMost([&] { return secondsFor(path, 512); }, kMostSeconds));
}

/// With their details.
class ManyOfAKind : public testing::TestWithParam<const char*> {};

TEST_P(ManyOfAKind, TakeTimeInProportion) {
  const tav::test::TemporaryFolder folder;
  const auto seconds = [&](std::uint64_t count) {
    const std::string path =
        writtenTo(folder, [&](std::ostream& out) { tav::bench::writeTabularMany(out, GetParam(), count); });
    return secondsFor(path, 512, true);
  };
  EXPECT_TRUE(
      tav::test::growsAtMost([&] { return seconds(3000); }, [&] { return seconds(30000); }, kLargestGrowth));
}

INSTANTIATE_TEST_SUITE_P(TabularSize, ManyOfAKind,
                         testing::Values("model-columns", "model-equal-columns", "model-measures",
                                         "model-equal-measures", "model-partitions", "model-annotations",
                                         "model-members", "model-equal-members", "model-tables",
                                         "model-equal-tables", "model-expressions"));

}  // namespace
