// Identifiers of messages: each means one thing, stands at one place of the sources, and is in the manual.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "framework/std/exception.h"
#include "messages/message.h"
#include "tests/support/corpus.h"

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = SOURCE_FOLDER;
const fs::path kManual = kRoot / "docs" / "xmla-bridge.1";
constexpr std::string_view kBegin = ".SS Of the program\n";
constexpr std::string_view kEnd = ".SS Of the plug-in and its libraries\n";

std::vector<std::string> matches(const std::string& text, const char* pattern) {
  const std::regex regex(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator i(text.begin(), text.end(), regex), end; i != end; ++i)
    found.push_back(i->size() > 1 ? (*i)[1].str() : i->str());
  return found;
}

/// The sources of the program, C++ and Java, by their paths from the root.
std::map<std::string, std::string> sources() {
  std::map<std::string, std::string> texts;
  for (const char* room :
       {"framework", "bridge", "views", "reader", "dimensions", "cubes", "expressions", "tabular", "messages",
        "lineage", "checks", "exports", "report", "host", "python"}) {
    for (auto i = fs::recursive_directory_iterator(kRoot / room); i != fs::recursive_directory_iterator();
         ++i) {
      if (i->path().filename() == "node_modules") i.disable_recursion_pending();
      const std::string extension = i->path().extension().string();
      if (extension == ".cpp" || extension == ".h" || extension == ".java")
        texts[fs::relative(i->path(), kRoot).string()] = tav::test::readFile(i->path());
    }
  }
  return texts;
}

/// A text as troff reads it back; what stands in for an argument is "...".
std::string troff(std::string_view text) {
  std::string shown = std::regex_replace(std::string(text), std::regex(R"((\{\d\})+)"), "...");
  shown = std::regex_replace(shown, std::regex(R"(\\|-)"), R"(\$&)");
  return shown.starts_with('\'') || shown.starts_with('.') ? R"(\&)" + shown : shown;
}

std::string manualOfProgram() {
  std::string text;
  for (const tav::MessageRow& row : tav::messageRows()) {
    text.append(".TP\n.B ").append(row.identifier).append("\n").append(troff(row.text)).append("\n.br\n");
    text.append(troff(row.advice)).append("\n");
  }
  return text;
}

TEST(Messages, IdentifiersAndNumbersAreUnique) {
  std::set<std::string> identifiers;
  std::set<std::string> numbers;
  for (const tav::MessageRow& row : tav::messageRows()) {
    const std::string identifier(row.identifier);
    EXPECT_TRUE(std::regex_match(identifier, std::regex("(XMLABRIDGE|TAVLINEAGE)_[FEWSI][0-9]{4}")));
    EXPECT_TRUE(identifiers.insert(identifier).second) << identifier;
    std::string number = identifier;
    number.erase(number.find('_') + 1, 1);
    EXPECT_TRUE(numbers.insert(number).second) << identifier << ": its number stands for two messages";
    EXPECT_TRUE(row.advice.ends_with('.')) << identifier;
  }
}

TEST(Messages, PlaceholdersAreFilledAndTheSeverityIsThatOfTheIdentifier) {
  EXPECT_EQ(tav::messageText(tav::Message::folderNotMade, {"models", "{0}"}),
            "[XMLABRIDGE_F0025] models: the folder cannot be made: {0}");
  EXPECT_EQ(tav::messageEvent(tav::Message::outOfMemory).getSeverity(), tav::kSeverityFatal);
  EXPECT_EQ(tav::messageEvent(tav::Message::noDefinition, {"f"}).getSeverity(), tav::kSeverityError);
  EXPECT_EQ(tav::messageEvent(tav::Message::duplicateInput).getSeverity(), tav::kSeverityWarning);
  EXPECT_EQ(tav::messageEvent(tav::Message::importEnded).getSeverity(), tav::kSeverityStatus);
  try {
    tav::fail(tav::Message::inputNotRead, {"standard input", "Bad file descriptor"});
  } catch (const TAVException& failure) {
    EXPECT_EQ(failure.getMessage(), "[XMLABRIDGE_F0008] standard input cannot be read: Bad file descriptor");
  }
}

TEST(Messages, ManualListsThoseOfTheProgram) {
  std::string manual = tav::test::readFile(kManual);
  const std::size_t begin = manual.find(kBegin) + kBegin.size();
  const std::size_t end = manual.find(kEnd);
  ASSERT_LE(begin, end);
  ASSERT_NE(end, manual.npos);
  if (std::getenv("UPDATE_GOLDENS")) {
    manual.replace(begin, end - begin, manualOfProgram());
    std::ofstream(kManual, std::ios::binary) << manual;
  } else {
    EXPECT_EQ(manual.substr(begin, end - begin), manualOfProgram());
  }
}

TEST(Messages, EachStandsAtOnePlaceAndIsUsed) {
  std::map<std::string, std::set<std::string>> places;
  std::string uses;
  for (const auto& [path, text] : sources()) {
    const std::string language = fs::path(path).extension() == ".java" ? "Java" : "C++";
    for (const std::string& found : matches(text, R"re("((?:XMLABRIDGE|TAV[A-Z]*)_[A-Z]\d{4})")re")) {
      EXPECT_TRUE(places[found].insert(language).second) << found << " stands twice, again in " << path;
      if (found.starts_with("XMLABRIDGE_") || found.starts_with("TAVLINEAGE_")) {
        EXPECT_EQ(path, "messages/message.cpp") << found;
      }
    }
    if (!path.starts_with("messages/")) uses += text;
  }
  const std::string header = tav::test::readFile(kRoot / "messages" / "message.h");
  for (const std::string& name : matches(header, R"re(\n  (\w+),(?=\n))re"))
    EXPECT_NE(uses.find("Message::" + name), uses.npos) << name << " is used nowhere";

  std::set<std::string> listed;
  for (const std::string& found :
       matches(tav::test::readFile(kManual), R"re(\n\.B ((?:XMLABRIDGE|TAV[A-Z]*)_[A-Z]\d{4})(?=\n))re"))
    EXPECT_TRUE(listed.insert(found).second) << found << " stands twice in the manual";
  for (const auto& [identifier, languages] : places)
    EXPECT_EQ(listed.erase(identifier), 1U) << identifier << " is not in the manual";
  EXPECT_TRUE(listed.empty()) << *listed.begin() << " is in the manual and nowhere in the sources";
}

}  // namespace
