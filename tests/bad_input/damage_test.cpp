#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/bad_input/element_spans.h"
#include "tests/support/checked_import.h"

namespace {

using tav::test::Span;

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
  add("dsv/views.txt",
      "<Database xmlns:xs='http://www.w3.org/2001/XMLSchema' "
      "xmlns:msprop='urn:schemas-microsoft-com:xml-msprop'>"
      "<DataSourceViews>",
      "</DataSourceViews></Database>");
  all.push_back(
      {"example", tav::test::readFile(tav::test::testFile("../examples/lost-property-create.xmla"))});
  return all;
}

class Damage {
 public:
  explicit Damage(unsigned seed) : random_(seed) {}

  /// Changes, doubles or drops some bytes.
  std::string bytes(std::string text) {
    for (std::size_t left = below(4) + 1; left > 0 && !text.empty(); --left) {
      const std::size_t at = below(text.size());
      const std::string part = text.substr(at, 1 + below(16));
      const std::size_t kind = below(3);
      if (kind == 0) text[at] = static_cast<char>(below(256));
      if (kind == 1) text.insert(below(text.size()), part);
      if (kind == 2) text.erase(at, part.size());
    }
    return text;
  }

  /// Drops elements, doubles them, and puts them inside or in place of others; what was well-formed stays it.
  std::string elements(std::string text) {
    for (std::size_t left = below(4) + 1; left > 0; --left) {
      const std::vector<Span> spans = tav::test::findElements(text);
      const Span& from = spans[below(spans.size())];
      const Span& to = spans[below(spans.size())];
      const std::string part = text.substr(from.begin, from.end - from.begin);
      const std::size_t kind = below(4);
      if (kind == 0 && to.begin > 0) text.erase(to.begin, to.end - to.begin);
      if (kind == 1 && to.begin > 0) text.insert(to.end, part);
      if (kind == 2 && !to.isOneTag()) text.insert(to.contentBegin, part);
      if (kind == 3) text.replace(to.begin, to.end - to.begin, part);
    }
    return text;
  }

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }

  std::mt19937 random_;
};

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
