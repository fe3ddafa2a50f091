#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <sstream>

#include "framework/std/date.h"
#include "framework/std/exception.h"
#include "framework/std/java_path.h"
#include "framework/std/literal.h"
#include "framework/std/log.h"
#include "framework/std/printable.h"
#include "framework/std/text.h"
#include "tests/support/corpus.h"

namespace {

TEST(Date, Corpus) {
  tav::test::checkCorpus("std/dates.txt", [](const std::string& seconds) {
    return TAVDate(std::stoll(seconds)).getPstTimestamp().str();
  });
}

TEST(Literal, ParameterizedTextCorpus) {
  tav::test::checkCorpus("std/literals.txt", [](const std::string& input) {
    std::istringstream lines(input);
    std::string text;
    std::getline(lines, text);
    TAVStringArray arguments;
    for (std::string argument; std::getline(lines, argument);) arguments.add(argument);
    return TAVParameterizedTextLiteral("key", text).createParameterizedText(arguments).str();
  });
}

TEST(Literal, CollectionFindsListsAndRefusesAKeyTwice) {
  TAVTextLiteralsCollection literals("Module", "Collection");
  TAVTextLiteral first("b", "first");
  TAVMessageLiteral second("a", "second {0}", "WARNING");
  literals.add(first);
  literals.add(second);
  literals.init();
  EXPECT_EQ(literals.get("a"), &second);
  EXPECT_EQ(literals.get("c"), nullptr);
  second.update("changed");
  EXPECT_EQ(literals.get("a")->getText(), "changed");
  TAVVector all;
  literals.listAllLiterals(all);
  ASSERT_EQ(all.getCount(), 2);
  EXPECT_EQ(all[0], static_cast<TAVTextLiteral*>(&first));

  TAVTextLiteral again("b", "another");
  literals.add(again);
  EXPECT_THROW(literals.init(), TAVException);
}

TEST(Log, SeverityNamesAndNumbersGoTogether) {
  for (std::int32_t n = tav::kSeverityFatal; n <= tav::kSeverityDebug; ++n)
    EXPECT_EQ(tav::severityOf(tav::severityName(n)), n);
  EXPECT_EQ(tav::severityName(tav::kSeverityWarning), "WARNING");
  EXPECT_EQ(tav::severityName(0), "");
  EXPECT_EQ(tav::severityName(7), "");
  EXPECT_EQ(tav::severityOf("warning"), std::nullopt);
  EXPECT_THROW(TAVMessageLiteral("1", "text", "LOUD"), TAVException);
}

TEST(Text, ABeginningEndsWithAWholeCharacter) {
  constexpr std::string_view kText = "a\u00E9\u20AC\U0001F600";  // 1, 2, 3 and 4 bytes
  constexpr std::array<std::size_t, 11> kSizes{0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10};
  for (std::size_t bytes = 0; bytes < kSizes.size(); ++bytes)
    EXPECT_EQ(tav::beginningOf(kText, bytes), kText.substr(0, kSizes[bytes])) << bytes;
  EXPECT_EQ(tav::beginningOf(kText, 99), kText);
  EXPECT_EQ(tav::beginningOf("\x80\x80\x80\x80\x80\x80", 5).size(), 2U) << "no UTF-8 at all";
}

TEST(Text, ATerminalGetsNoControlCharacterAndNoTurnedText) {
  EXPECT_EQ(tav::printable("a\n\t\x1b[31m\x7F"), "a\\n\\t\\x1b[31m\\x7f");
  EXPECT_EQ(tav::printable("\xC2\x9B"
                           "31m \xC2\x80 \xC2\xA0"),
            "\\x9b31m \\x80 \xC2\xA0");
  EXPECT_EQ(tav::printable("Sales\xE2\x80\xAEselaS\xE2\x81\xA6 \xD8\x9C \xE2\x80\xA8"),
            "Sales\\u202eselaS\\u2066 \\u061c \\u2028");
  EXPECT_EQ(tav::printable("Gr\xC3\xB6\xC3\x9F"
                           "e \x9B \xFF"),
            "Gr\xC3\xB6\xC3\x9F"
            "e \\x9b \xFF");
}

TEST(JavaPath, LiesBesideTheFoldersOfTheLibrary) {
  const std::filesystem::path path = getTAVJavaPath().str();
  EXPECT_TRUE(path.string().ends_with("/share/xmla-bridge/java")) << path;
  const std::filesystem::path root = path.parent_path().parent_path().parent_path();
  EXPECT_TRUE(std::filesystem::exists(root / "lib")) << path;
}

}  // namespace
