#include "framework/std/mask.h"

#include <gtest/gtest.h>

#include <chrono>

#include "tests/support/corpus.h"

namespace {

TEST(Mask, Corpus) {
  tav::test::checkCorpus("exports/mask.txt", [](const std::string& input) {
    return tav::test::escape(tav::maskPasswords(tav::test::unescape(input)));
  });
}

TEST(Mask, OfMaskedTextChangesNothing) {
  for (const auto& c : tav::test::loadCorpus("exports/mask.txt")) {
    const std::string masked = tav::maskPasswords(tav::test::unescape(c.input));
    EXPECT_EQ(tav::maskPasswords(masked), masked) << c.name;
  }
}

TEST(Mask, OfEveryTruncationEnds) {
  for (const auto& c : tav::test::loadCorpus("exports/mask.txt")) {
    const std::string text = tav::test::unescape(c.input);
    for (std::size_t size = 0; size <= text.size(); ++size) tav::maskPasswords(text.substr(0, size));
  }
}

TEST(Mask, CostGrowsWithTheText) {
  for (const char* piece :
       {"Password=\"", "\\\\\\\"pwd\\\" : \\\"", "pwd   ", "'", "\"\"", "password={", "{\"pwd\":["}) {
    std::string text;
    while (text.size() < (std::size_t{8} << 20)) text += piece;
    const auto start = std::chrono::steady_clock::now();
    tav::maskPasswords(text);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << piece;
  }
}

TEST(Mask, APropertyThatIsAPasswordIsHiddenWhole) {
  EXPECT_EQ(tav::maskProperty("Password", "a b"), "***");
  EXPECT_EQ(tav::maskProperty("credential.PWD", "a"), "***");
  EXPECT_EQ(tav::maskProperty("pwd", ""), "");
  EXPECT_EQ(tav::maskProperty("Passwords", "a"), "a");
  EXPECT_EQ(tav::maskProperty("options", "{\"pwd\":\"a\"}"), "{\"pwd\":\"***\"}");
}

}  // namespace
