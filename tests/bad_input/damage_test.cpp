#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/checked_import.h"
#include "tests/support/damage.h"

namespace {

using tav::test::Damage;

struct Document {
  std::string name;
  std::string text;
};

std::vector<Document> documents() {
  std::vector<Document> all;
  const auto add = [&](const std::string& file, std::string_view front, std::string_view back) {
    for (const auto& c : tav::test::loadCorpus(file)) {
      if (!c.input.starts_with('<')) continue;
      all.push_back({file + ": " + c.name, std::string(front)});
      all.back().text.append(c.input).append(back);
    }
  };
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(tav::test::testFile("reader")))
    if (entry.path().extension() == ".txt" && entry.path().filename() != "CMakeLists.txt")
      files.push_back("reader/" + entry.path().filename().string());
  std::sort(files.begin(), files.end());
  for (const std::string& file : files) add(file, "", "");
  add("bad_input/elements.txt", "", "");
  add("views/views.txt",
      "<Database xmlns:xs='http://www.w3.org/2001/XMLSchema' "
      "xmlns:msprop='urn:schemas-microsoft-com:xml-msprop'>"
      "<DataSourceViews>",
      "</DataSourceViews></Database>");
  all.push_back(
      {"example", tav::test::readFile(tav::test::testFile("../examples/lost-property-create.xmla"))});
  return all;
}

// What each of these runs checks is in the import itself: a model that keeps the laws, or one TAVException.
TEST(Damage, OfBytesGivesAModelOrOneError) {
  constexpr int kRounds = 60;
  tav::test::DocumentImporter importer;
  Damage damage(1);
  for (const Document& document : documents()) {
    for (int round = 0; round < kRounds; ++round) {
      SCOPED_TRACE(document.name + ", round " + std::to_string(round));
      importer.import(damage.bytes(document.text));
    }
  }
}

TEST(Damage, OfElementsGivesAModel) {
  constexpr int kRounds = 25;
  tav::test::DocumentImporter importer;
  Damage damage(2);
  for (const Document& document : documents()) {
    if (document.text.find("<!") != std::string::npos || document.text.find("<?") != std::string::npos ||
        !importer.import(document.text).model)
      continue;
    for (int round = 0; round < kRounds; ++round)
      EXPECT_EQ(importer.import(damage.elements(document.text)).error, "")
          << document.name << ", round " << round;
  }
}

}  // namespace
