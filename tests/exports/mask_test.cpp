#include "framework/std/mask.h"

#include <gtest/gtest.h>

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

}  // namespace
