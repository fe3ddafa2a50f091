#include <gtest/gtest.h>

#include "framework/details/setting_words.h"
#include "framework/expression/layout.h"
#include "framework/std/line_diff.h"
#include "tests/host/shell.h"

namespace {

namespace fs = std::filesystem;

std::string linesText(const std::string& before, const std::string& after) {
  std::string text;
  for (const tav::DiffLine& line : tav::lineDiff(before, after))
    text.append({" -+"[static_cast<int>(line.kind)], ' '}).append(line.line).append("\n");
  return text;
}

TEST(Diff, Commands) {
  tav::test::checkCorpus("lineage/diff.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, [](const tav::test::TemporaryFolder& folder) {
      for (const char* name : {"orchard.xml", "orders.xmla"})
        fs::copy_file(tav::test::testFile(std::string("lineage/") + name), folder.path() / name);
    });
  });
}

TEST(Diff, SettingWords) {
  tav::test::checkCorpus("lineage/setting_words.txt", tav::settingWords);
}

TEST(Diff, TextsWithoutLayout) {
  tav::test::checkCorpus("lineage/layout.txt", [](const std::string& input) {
    const std::size_t end = input.find('\n');
    return tav::withoutLayout(input.substr(end + 1), input.substr(0, end));
  });
}

TEST(Diff, Lines) {
  tav::test::checkCorpus("lineage/line_diff.txt", [](const std::string& input) {
    const std::size_t middle = input.find("=>");
    std::string text = linesText(input.substr(0, middle), input.substr(std::min(middle + 3, input.size())));
    text.pop_back();
    return text;
  });
}

/// Whatever is chosen to stay, both texts can be read from the list.
TEST(Diff, LinesHoldBothTexts) {
  const auto lines = [](std::size_t count, std::size_t factor, std::size_t kinds) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += std::to_string(i * factor % kinds) + "\n";
    return text;
  };
  // Few differences, texts that share nothing but their lines, and lines that all occur very often.
  for (const auto& [before, after] : {std::pair{lines(500, 1, 499), lines(510, 1, 503)},
                                      {lines(100'000, 7, 99'991), lines(100'000, 11, 99'989)},
                                      {lines(100'000, 3, 7), lines(90'000, 5, 7)}}) {
    std::string was;
    std::string is;
    for (const tav::DiffLine& line : tav::lineDiff(before, after)) {
      if (line.kind != tav::DiffLine::Kind::added) was.append(line.line).append("\n");
      if (line.kind != tav::DiffLine::Kind::removed) is.append(line.line).append("\n");
    }
    EXPECT_TRUE(was == before && is == after);
  }
}

}  // namespace
