// Lineage of shapes that no designer draws: every command and format takes time in proportion to them.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstdlib>
#include <fstream>

#include "tests/support/corpus.h"
#include "tests/support/timing.h"

namespace {

constexpr int kCount = 2'500;
constexpr int kTimes = 4;
constexpr double kMostGrowth = 5;
constexpr double kUnnoticed = 0.25;  // seconds, which say more of the machine than of the program

enum class Shape { chain, fan, circle };

/// A cube with so many calculated measures, each of which uses one other.
std::string definitionOf(Shape shape, int count) {
  std::string script;
  for (int i = 0; i < count; ++i) {
    const int used = shape == Shape::fan ? 0 : i - 1;
    const bool begins = shape != Shape::circle && i == 0;
    script += "CREATE MEMBER CURRENTCUBE.[Measures].[M" + std::to_string(i) + "] AS ";
    script += begins ? "1;" : "[Measures].[M" + std::to_string(used < 0 ? count - 1 : used) + "] + 1;";
  }
  return "<Database><Name>D</Name><Cubes><Cube><ID>C</ID><Name>C</Name><MdxScripts><MdxScript><ID>S</ID>"
         "<Commands><Command><Text>" +
         script + "</Text></Command></Commands></MdxScript></MdxScripts></Cube></Cubes></Database>";
}

/// The processor time of a shell command.
double secondsOf(const std::string& command) {
  const auto used = [] {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
      return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
  };
  const double before = used();
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  return used() - before;
}

constexpr std::array kCommands{
    "import IN -o m.xml",
    "export IN --format json -o out",
    "export IN --format openlineage -o out",
    "export IN --format csv -o out",
    "export IN --format sqlite -o out.db",
    "export IN --format dot -o out",
    "export IN --format mermaid -o out",
    "report IN -o out",
    "trace IN '[Measures].[M9]'",
    "trace IN '[Measures].[M9]' --format list",
    "trace IN '[Measures].[M9]' --format json",
    "impact IN '[Measures].[M0]'",
    "impact IN '[Measures].[M0]' --format list",
    "impact IN '[Measures].[M0]' --format csv",
    "coverage IN",
    "unused IN",
    "check IN",
    "diff IN IN",
};

class LineageSize : public testing::TestWithParam<Shape> {};

TEST_P(LineageSize, CostsTimeInProportion) {
  const tav::test::TemporaryFolder folder;
  const std::string small = folder.write("small.xmla", definitionOf(GetParam(), kCount));
  const std::string large = folder.write("large.xmla", definitionOf(GetParam(), kTimes * kCount));
  for (std::string command : kCommands) {
    const auto seconds = [&](const std::string& input) {
      std::string words = command;
      for (std::size_t at = words.find("IN"); at != words.npos; at = words.find("IN", at + input.size()))
        words.replace(at, 2, input);
      return secondsOf("cd '" + folder.path().string() +
                       "' && rm -f out.db && '" PROGRAM_FOLDER "/xmla-bridge' " + words +
                       " --quiet >answer 2>&1");
    };
    EXPECT_TRUE(tav::test::growsAtMost([&] { return seconds(small); }, [&] { return seconds(large); },
                                       kMostGrowth, kUnnoticed))
        << command;
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, LineageSize, testing::Values(Shape::chain, Shape::fan, Shape::circle));

}  // namespace
