#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

#include "tests/support/checked_import.h"
#include "tests/support/model_text.h"

namespace {

using tav::test::Imported;

/// A corpus input as a document: escapes resolved, then "$(N text)" written out N times.
std::string documentOf(const std::string& input) {
  const std::string text = tav::test::unescape(input);
  std::string document;
  std::size_t done = 0;
  for (std::size_t at = text.find("$("); at != std::string::npos; at = text.find("$(", done)) {
    document.append(text, done, at - done);
    const std::size_t blank = text.find(' ', at);
    const std::size_t end = text.find(')', at);
    const std::string part = text.substr(blank + 1, end - blank - 1);
    for (int left = std::stoi(text.substr(at + 2)); left > 0; --left) document += part;
    done = end + 1;
  }
  return document.append(text, done);
}

/// The model as far as a person can read it.
std::string shownModel(const TAVModel& model) {
  constexpr std::size_t kAllLines = 40, kFirstLines = 6, kLine = 300;
  const std::string text = tav::test::modelText(model);
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  std::istringstream in(text);
  std::string shown;
  for (std::size_t left = lines > kAllLines ? kFirstLines : lines; left > 0; --left) {
    std::string line;
    std::getline(in, line);
    if (line.size() > kLine) line = line.substr(0, 60) + "... (" + std::to_string(line.size()) + " bytes)";
    shown += (shown.empty() ? "" : "\n") + line;
  }
  if (lines > kAllLines) shown += "\n... (" + std::to_string(lines) + " objects)";
  return shown;
}

TEST(BadDocuments, EachIsAModelOrOneClearError) {
  tav::test::DocumentImporter importer;
  tav::test::checkCorpus("bad_input/documents.txt", [&](const std::string& input) {
    const Imported result = importer.import(documentOf(input));
    return result.model ? shownModel(*result.model) : result.error;
  });
}

std::size_t filesIn(const std::filesystem::path& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// What the program says where it refuses a document before the import sees it, by the name of the document.
std::map<std::string, std::string> refusals() {
  std::map<std::string, std::string> refusals;
  for (const auto& c : tav::test::loadCorpus("bad_input/refused.txt")) refusals.emplace(c.name, c.expected);
  return refusals;
}

TEST(BadDocuments, WhatTheProgramRefusesLeavesTheOldModelAndNothingElse) {
  auto refused = refusals();
  for (const auto& c : tav::test::loadCorpus("bad_input/documents.txt")) {
    if (!c.expected.starts_with('[')) continue;
    const tav::test::TemporaryFolder folder;
    const std::string output = folder.write("model.xml", "before");
    const std::string input = folder.write("FILE", documentOf(c.input));
    const std::string messages = (folder.path() / "messages").string();
    const std::string command = "cd '" + folder.path().string() +
                                "' && " PROGRAM " --quiet import FILE -o model.xml >messages 2>&1 </dev/null";
    const int status = std::system(command.c_str());
    const auto own = refused.extract(c.name);
    const std::string expected = own ? own.mapped() : "1 " + c.expected;
    EXPECT_EQ(std::to_string(WEXITSTATUS(status)) + " " + tav::test::readFile(messages), expected + "\n")
        << c.name;
    EXPECT_EQ(tav::test::readFile(output), "before") << c.name;
    EXPECT_EQ(filesIn(folder.path()), 3U) << c.name;
  }
  for (const auto& [name, expected] : refused) ADD_FAILURE() << "no refused document has the name " << name;
}

}  // namespace
