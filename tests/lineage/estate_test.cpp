// Answers from the rows of an estate are those that its models give.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/corpus.h"
#include "tests/support/estate_answers.h"

namespace {

namespace fs = std::filesystem;

void checkName(const tav::test::EstateDocuments& documents, const std::string& name,
               const tav::LineageWalk& walk) {
  EXPECT_EQ(documents.answerOfRows(name, walk), documents.answer(name, walk)) << name;
}

std::string makeEstate(const tav::test::TemporaryFolder& folder) {
  std::string estate = (folder.path() / "estate.db").string();
  std::string command("'" PROGRAM_FOLDER "/xmla-bridge' import --quiet --jobs 1 --estate '" + estate + "'");
  for (const char* name :
       {"murmeltal-huts.asdatabase", "ferry-line.bim", "estate/guest-letter.bim", "estate/hut-board.bim"})
    command.append(" '" EXAMPLES "/").append(name).append("'");
  for (const char* name : {"orders.xmla", "names.xmla", "counts.bim"})
    command.append(" '").append(tav::test::testFile(std::string("lineage/") + name).string()).append("'");
  // Another one of the same name, over the same tables.
  fs::copy(tav::test::testFile("lineage/orders.xmla"), folder.path() / "copy.xmla");
  command.append(" '").append((folder.path() / "copy.xmla").string()).append("' >/dev/null 2>&1");
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
  return estate;
}

TEST(Estate, RowsAnswerAsTheirModelsDo) {
  constexpr tav::JoinedId kStep = 7;  // of the nodes, so many of which are asked for
  const tav::test::TemporaryFolder folder;
  const tav::test::EstateDocuments documents(makeEstate(folder));
  const tav::JoinedNames names(documents.joined());
  for (const auto direction : {tav::LineageDirection::upstream, tav::LineageDirection::downstream}) {
    const tav::JoinedId first = direction == tav::LineageDirection::upstream ? 0 : kStep / 2;
    for (tav::JoinedId id = first; id < documents.joined().size(); id += kStep) {
      tav::LineageWalk walk{direction};
      walk.values = id % 3 == 0;
      if (id % 4 == 0) walk.depth = id % 5;
      checkName(documents, names.nameOf(id), walk);
    }
    // Names of several, parts of names, paths, what is misspelt, what nothing is called, and no name.
    for (const char* name : {"Amount", "mount", "[Orders]", "orders", "/", "Amout", "x/y", "zzzzzzzzzz", ""})
      checkName(documents, name, {direction});
  }
}

}  // namespace
