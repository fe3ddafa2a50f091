#include "framework/std/sha256.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using tav::Sha256;

/// The sum of a text that comes in pieces of one size.
std::string sumOf(std::string_view text, std::size_t piece, Sha256::Compress compress) {
  Sha256 sum(compress);
  for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) sum.add(text.substr(0, piece));
  return sum.finish();
}

class EveryWay : public testing::TestWithParam<Sha256::Compress> {};

TEST_P(EveryWay, GivesTheSumsOfTheStandard) {
  if (!GetParam()) GTEST_SKIP() << "the processor has no instructions for it";
  const std::string millionLetters(1'000'000, 'a');
  const std::vector<std::pair<std::string_view, std::string_view>> cases{
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrs"
       "mnopqrstnopqrstu",
       "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1"},
      {millionLetters, "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [text, sum] : cases)
    for (const std::size_t piece : {1, 7, 63, 64, 65, 1'000'000})
      EXPECT_EQ(sumOf(text, piece, GetParam()), sum) << text.substr(0, 60) << " in pieces of " << piece;
}

INSTANTIATE_TEST_SUITE_P(Sha256, EveryWay, testing::Values(Sha256::compressPlainly, Sha256::compressFast()));

// Where the padding takes another block, both ways must agree.
TEST(Sha256, IsTheSameEveryWayForEachLength) {
  if (!Sha256::compressFast()) GTEST_SKIP() << "the processor has no instructions for it";
  std::string text;
  for (; text.size() < 200; text += static_cast<char>(text.size() * 37))
    EXPECT_EQ(sumOf(text, 200, Sha256::compressPlainly), sumOf(text, 200, Sha256::compressFast()));
}

}  // namespace
