#include "exports/sqlite.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "framework/std/exception.h"
#include "tests/support/corpus.h"
#include "tests/tables/questions.h"
#include "tests/tables/small_model.h"

namespace {

using tav::test::ask;

constexpr std::chrono::milliseconds kPatience = std::chrono::minutes{1};

/// The message of the failure, with the file as DB; empty when the load succeeds.
std::string load(const std::string& database, const std::string& input, const std::string& name,
                 const std::string& content, std::chrono::milliseconds patience = kPatience) {
  const std::array<std::string, 1> warnings{"[W1] a message of the import of " + input};
  tav::ExportOptions options;
  options.input = input;
  options.warnings = warnings;
  try {
    const tav::SavedModel model = tav::test::smallModel(name, content);
    tav::exportSqlite({*model.model, model.details.get()}, options, database, patience);
    return {};
  } catch (const TAVException& error) {
    std::string message = error.getMessage().str();
    if (const std::size_t place = message.find(database); place != message.npos)
      message.replace(place, database.size(), "DB");
    return message;
  }
}

/// Carries out lines "load INPUT NAME", with the content of a model behind it, and "ask QUERY".
std::string session(const std::string& script) {
  const tav::test::TemporaryFolder folder;
  const std::string database = (folder.path() / "models.db").string();
  std::istringstream lines(script);
  std::string shown, command, input, name, content;
  const auto finishLoad = [&] {
    if (!input.empty()) shown += load(database, input, name, content);
    input.clear();
  };
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    words >> command;
    if (command == "load") {
      finishLoad();
      words >> input >> name;
      content.clear();
    } else if (command == "ask") {
      finishLoad();
      shown += ask(database, line.substr(4));
    } else {
      content += line;
    }
  }
  if (!shown.empty()) shown.pop_back();
  return shown;
}

TEST(Sqlite, Corpus) {
  tav::test::checkCorpus("tables/sqlite.txt", session);
}

TEST(Sqlite, WhatIsNoDatabaseOfModelsIsLeftAlone) {
  const tav::test::TemporaryFolder folder;
  const std::string text =
      folder.write("text", "this is a text, and long enough to be taken for a header of one");
  EXPECT_EQ(load(text, "m.xml", "M", ""),
            "[XMLABRIDGE_F0032] DB: the file exists and is no lineage database of this program");
  EXPECT_TRUE(tav::test::readFile(text).starts_with("this is a text"));

  const std::string other = folder.write("other.db", "");
  EXPECT_EQ(ask(other, "CREATE TABLE models(name); INSERT INTO models VALUES('theirs')"), "");
  EXPECT_EQ(load(other, "m.xml", "M", ""),
            "[XMLABRIDGE_F0032] DB: the file exists and is no lineage database of this program");
  EXPECT_EQ(ask(other, "SELECT * FROM models"), "name\ntheirs\n");

  const std::string earlier = folder.write("earlier.db", "");
  EXPECT_EQ(load(earlier, "m.xml", "M", ""), "");
  EXPECT_EQ(ask(earlier, "PRAGMA user_version = 3"), "");
  EXPECT_EQ(
      load(earlier, "m.xml", "M", ""),
      "[XMLABRIDGE_F0033] DB: its tables are of version 3 and those of this program of version 6; import the "
      "definitions again, into a new database");

  EXPECT_EQ(load((folder.path() / "no" / "such.db").string(), "m.xml", "M", ""),
            "[XMLABRIDGE_F0031] DB: unable to open database file: No such file or directory");
}

TEST(Sqlite, AFailureInTheMiddleLeavesTheDatabaseAsItWas) {
  const tav::test::TemporaryFolder folder;
  const std::string database = (folder.path() / "m.db").string();
  EXPECT_EQ(load(database, "m.xml", "M", ""), "");
  EXPECT_EQ(
      ask(database, "CREATE TRIGGER late BEFORE INSERT ON warnings BEGIN SELECT raise(ABORT, 'full'); END"),
      "");
  const std::string before = tav::test::readFile(database);
  EXPECT_EQ(load(database, "m.xml", "M", ""), "[XMLABRIDGE_F0031] DB: full");
  EXPECT_EQ(tav::test::readFile(database), before);
}

TEST(Sqlite, NamesOfDatabasesInMemoryAreFiles) {
  const tav::test::TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  for (const char* name : {":memory:", "file:x?mode=memory"}) {
    EXPECT_EQ(load(name, "m.xml", "M", ""), "");
    EXPECT_GT(std::filesystem::file_size(folder.path() / name), 0U);
  }
  std::filesystem::current_path(before);
}

TEST(Sqlite, LoadsAtTheSameTimeWaitForEachOther) {
  const tav::test::TemporaryFolder folder;
  const std::string database = (folder.path() / "m.db").string();
  std::vector<std::string> failures(8);
  std::vector<std::thread> loads;
  for (std::size_t i = 0; i < failures.size(); ++i)
    loads.emplace_back([&, i] { failures[i] = load(database, std::to_string(i) + ".xml", "M", ""); });
  for (std::thread& thread : loads) thread.join();
  for (const std::string& failure : failures) EXPECT_EQ(failure, "");
  EXPECT_EQ(ask(database, "SELECT count(DISTINCT source) AS n FROM models"), "n\n8\n");
}

TEST(Sqlite, ALockThatStaysIsAFailure) {
  const tav::test::TemporaryFolder folder;
  const std::string database = (folder.path() / "m.db").string();
  EXPECT_EQ(load(database, "m.xml", "M", ""), "");
  std::string inTheMeantime;
  tav::test::whileLocked(
      database, [&] { inTheMeantime = load(database, "n.xml", "N", "", std::chrono::milliseconds(50)); });
  EXPECT_EQ(inTheMeantime, "[XMLABRIDGE_F0034] DB: another process keeps the database locked");
  EXPECT_EQ(load(database, "n.xml", "N", ""), "");
}

}  // namespace
