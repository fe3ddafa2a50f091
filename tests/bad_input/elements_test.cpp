#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "tests/support/checked_import.h"
#include "tests/support/element_spans.h"
#include "tests/support/model_text.h"

namespace {

using tav::test::Imported;
using tav::test::Span;

constexpr std::string_view kJunk = "]] junk / 99999999999999999999 \xE2\x98\x83";
constexpr int kDepth = 100'000;

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (; times > 0; --times) result += text;
  return result;
}

/// A document that gives the span's place to other text.
std::string replaced(std::string document, const Span& span, std::string_view text) {
  return document.replace(span.begin, span.end - span.begin, text);
}

std::string withContent(const std::string& document, const Span& span, std::string_view content) {
  if (!span.isOneTag())
    return document.substr(0, span.contentBegin).append(content) + document.substr(span.contentEnd);
  std::string whole = document.substr(span.begin, span.end - span.begin);
  const std::string tag = whole.substr(1, whole.find_first_of(" />") - 1);
  whole.replace(whole.size() - 2, 2, ">");
  return replaced(document, span, whole.append(content) + "</" + tag + ">");
}

class DamageTable {
 public:
  explicit DamageTable(std::string document) : document_(std::move(document)), before_(modelOf(document_)) {}

  std::string write() {
    static const std::string kNest = repeated("<deep>", kDepth) + repeated("</deep>", kDepth);
    for (const Span& element : tav::test::findElements(document_)) {
      addDamages(element);
      const std::size_t size = element.contentEnd - element.contentBegin;
      addCell(withContent(document_, element, kNest + document_.substr(element.contentBegin, size)));
      for (const Span& attribute : findAttributes(document_, element)) addDamages(attribute);
    }
    return table_.substr(1);
  }

 private:
  void addDamages(const Span& span) {
    table_.append("\n").append(shortened(span.path)).append(":");
    separator_ = " ";
    addCell(replaced(document_, span, ""));
    addCell(withContent(document_, span, ""));
    addCell(document_.substr(0, span.end) + document_.substr(span.begin));
    addCell(withContent(document_, span, kJunk));
  }

  /// The last three steps of a path.
  static std::string shortened(const std::string& path) {
    std::size_t at = path.size();
    for (int steps = 3; steps > 0 && at != std::string::npos; --steps) at = path.rfind('/', at - 1);
    return at == std::string::npos ? path : path.substr(at + 1);
  }

  std::string modelOf(const std::string& document) {
    const Imported result = importer_.import(document);
    return result.model ? tav::test::modelText(*result.model) : "";
  }

  void addCell(const std::string& document) {
    table_ += separator_ + difference(modelOf(document));
    separator_ = ", ";
  }

  [[nodiscard]] std::string difference(const std::string& model) const {
    if (model.empty()) return "error";
    if (model == before_) return "same";
    return signedNumber(count(model, "\n") - count(before_, "\n")) + " " +
           signedNumber(count(model, " FeatureMap ") - count(before_, " FeatureMap "));
  }
  static std::string signedNumber(int number) { return (number < 0 ? "" : "+") + std::to_string(number); }
  static int count(std::string_view text, std::string_view part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++found;
    return found;
  }

  tav::test::DocumentImporter importer_;
  std::string document_;
  std::string before_;
  std::string table_;
  std::string separator_;
};

TEST(DamagedElements, EachGivesAModelOrOneClearError) {
  tav::test::checkCorpus("bad_input/elements.txt",
                         [](const std::string& input) { return DamageTable(input).write(); });
}

TEST(DamagedElements, TheDefinitionsHoldEveryElementThatIsRead) {
  std::set<std::string> tags;
  for (const auto& c : tav::test::loadCorpus("bad_input/elements.txt"))
    for (const Span& element : tav::test::findElements(c.input))
      tags.insert(element.path.substr(element.path.rfind('/') + 1));
  std::istringstream vocabulary(tav::test::readFile(tav::test::testFile("../reader/run/vocabulary.h")));
  int names = 0;
  for (std::string line; std::getline(vocabulary, line);) {
    const std::size_t begin = line.find("= \""), end = line.rfind('"');
    if (begin == std::string::npos) continue;
    ++names;
    const std::string name = line.substr(begin + 3, end - begin - 3);
    EXPECT_EQ(tags.count(name), 1U) << name << " stands in no definition of bad_input/elements.txt";
  }
  EXPECT_GT(names, 30);
}

TEST(DamagedElements, EveryTruncationIsAnErrorWithItsPlace) {
  tav::test::DocumentImporter importer;
  const std::string document = tav::test::loadCorpus("bad_input/elements.txt").front().input;
  for (std::size_t size = 0; size < document.size(); ++size) {
    const std::string part = document.substr(0, size);
    const auto line = std::to_string(1 + std::count(part.begin(), part.end(), '\n'));
    const Imported result = importer.import(part);
    EXPECT_TRUE(result.error.starts_with("[TAVDOM_F0001] FILE:" + line + ":"))
        << size << ": " << result.error;
  }
}

}  // namespace
