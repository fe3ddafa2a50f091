#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/corpus.h"
#include "tests/tables/questions.h"

namespace {

/// The text of the next block "```LANGUAGE" of a document behind `place`, which moves behind it; empty at the
/// end.
std::string nextBlock(const std::string& document, const std::string& language, std::size_t& place) {
  const std::string begin = "```" + language + "\n";
  const std::size_t found = document.find(begin, place);
  if (found == document.npos) return {};
  const std::size_t from = found + begin.size();
  place = document.find("```\n", from);
  return document.substr(from, place - from);
}

// The questions of the document, with the answers that stand there.
TEST(Tables, AnswerAsDocumented) {
  const std::filesystem::path root = tav::test::testFile("..");
  const std::string document = tav::test::readFile(root / "docs/tables.md");
  const tav::test::TemporaryFolder folder;
  const std::string database = (folder.path() / "estate.db").string();
  for (const char* input : {"murmeltal-huts.asdatabase", "ferry-line.bim"}) {
    const std::string command = "cd '" + (root / "examples").string() + "' && " PROGRAM " export " + input +
                                " --format sqlite --quiet -o '" + database + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
  std::size_t questions = 0;
  for (std::size_t place = 0;; ++questions) {
    const std::string query = nextBlock(document, "sql", place);
    if (query.empty()) break;
    std::string answer = tav::test::ask(database, query);
    // The folder of the examples, which the document calls otherwise.
    const std::string examples = std::filesystem::canonical(root / "examples").string();
    for (std::size_t at = 0; (at = answer.find(examples, at)) != answer.npos;)
      answer.replace(at, examples.size(), "/estate");
    EXPECT_EQ(answer, nextBlock(document, "text", place)) << query;
  }
  EXPECT_GT(questions, 5U);
}

}  // namespace
