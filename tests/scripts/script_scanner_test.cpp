#include <gtest/gtest.h>

#include "expressions/script_scanner.h"
#include "tests/support/corpus.h"

namespace {

std::string show(const std::string& input) {
  const std::string script = tav::removeScriptComments(tav::test::unescape(input));
  std::string text;
  for (const tav::CalculatedMeasure& measure : tav::findCalculatedMeasures(script))
    text += (text.empty() ? "" : "\n") + tav::test::escape(measure.name) +
            " := " + tav::test::escape(measure.expression);
  return text;
}

std::string repeated(std::string_view part, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

TEST(ScriptScanner, FindsCalculatedMeasures) {
  tav::test::checkCorpus("scripts/measures.txt", show);
}

TEST(ScriptScanner, RemovesComments) {
  tav::test::checkCorpus("scripts/comments.txt", [](const std::string& input) {
    return tav::test::escape(tav::removeScriptComments(tav::test::unescape(input)));
  });
}

TEST(ScriptScanner, KeepsTheWholeStatement) {
  const std::string script =
      "CALCULATE; CREATE MEMBER c.Measures.[x] AS 1, VISIBLE = 0;  CREATE SET s AS {};";
  const auto measures = tav::findCalculatedMeasures(script);
  ASSERT_EQ(measures.size(), 1U);
  EXPECT_EQ(measures[0].statement, "CREATE MEMBER c.Measures.[x] AS 1, VISIBLE = 0;");
}

TEST(ScriptScanner, EveryPrefixOfEveryCaseIsRead) {
  for (const char* file : {"scripts/measures.txt", "scripts/comments.txt"})
    for (const auto& one : tav::test::loadCorpus(file))
      for (std::size_t size = 0; size <= one.input.size(); ++size) show(one.input.substr(0, size));
}

/// Scripts in which a search that is repeated after it missed once, or that starts over, takes hours.
TEST(ScriptScanner, ReadsHostileScriptsInOnePass) {
  constexpr int kMany = 1000000;
  const std::string member = "CREATE MEMBER c.[Measures].[m] AS [a]+[b];\n";
  EXPECT_EQ(tav::findCalculatedMeasures(repeated("CREATE ", kMany)).size(), 0U);
  EXPECT_EQ(tav::findCalculatedMeasures(repeated("CREATE x; ", kMany)).size(), 0U);
  EXPECT_EQ(tav::findCalculatedMeasures(repeated("CREATE x; ", kMany) + member).size(), 1U);
  EXPECT_EQ(tav::findCalculatedMeasures(repeated("MEMBER ", kMany) + ";").size(), 0U);
  EXPECT_EQ(tav::findCalculatedMeasures(repeated(member, kMany / 10)).size(), 100000U);
  EXPECT_EQ(tav::removeScriptComments(repeated("/*\n", kMany)).size(), 3U * kMany);
  EXPECT_EQ(tav::removeScriptComments(repeated("/**/", kMany)), "");
  EXPECT_EQ(tav::removeScriptComments(repeated("/**/", kMany) + "\n"), "\n");
  EXPECT_EQ(tav::removeScriptComments(std::string(kMany, ' ') + repeated("/**/ ", kMany) + "\nx").back(),
            'x');
}

}  // namespace
