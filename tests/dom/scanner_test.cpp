// The scanner and Expat read every document alike, and find the same fault at the same place.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/corpus.h"
#include "tests/support/expat_reading.h"

namespace {

using tav::test::expatReading;
using tav::test::isPlainDocument;
using tav::test::ourReading;

/// What tags, texts and faults are made of.
std::vector<std::string> pieces() {
  std::istringstream lines(tav::test::readFile(tav::test::testFile("dom/pieces.txt")));
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line);) all.push_back(tav::test::unescape(line));
  return all;
}

/// Makes up text, the same in every run.
class Pieces {
 public:
  explicit Pieces(std::mt19937::result_type seed) : random_(seed) {}

  std::size_t below(std::size_t bound) { return random_() % bound; }
  const std::string& one() { return all_[below(all_.size())]; }
  std::string some(std::size_t bound) {
    std::string text;
    for (std::size_t n = below(bound); n-- > 0;) text += one();
    return text;
  }

 private:
  std::mt19937 random_;
  std::vector<std::string> all_ = pieces();
};

void expectAlike(const std::string& document) {
  if (!isPlainDocument(document)) return;
  EXPECT_EQ(ourReading(document), expatReading(document))
      << tav::test::escape(document, true).substr(0, 1000);
}

TEST(Scanner, ReadsMadeUpDocumentsAsExpatDoes) {
  Pieces pieces(7);
  for (int round = 0; round < 15000; ++round) {
    expectAlike(pieces.some(6));
    expectAlike(pieces.some(3) + "<r>" + pieces.some(8) + "</r>" + pieces.some(3));
    expectAlike("<?xml version='1.0'" + pieces.some(3) + "?><r" + pieces.some(5) + "></r>");
  }
}

TEST(Scanner, ReadsDamagedDocumentsAsExpatDoes) {
  Pieces pieces(11);
  for (const auto& c : tav::test::loadCorpus("dom/documents.txt")) {
    const std::string document = tav::test::unescape(c.input);
    expectAlike(document);
    for (std::size_t end = 0; end < document.size(); ++end) expectAlike(document.substr(0, end));
    for (int round = 0; round < 100 && !document.empty(); ++round) {
      std::string damaged = document;
      const std::size_t at = pieces.below(damaged.size());
      if (pieces.below(2) == 0) damaged.erase(at, pieces.below(4));
      damaged.insert(std::min(at, damaged.size()), pieces.one());
      expectAlike(damaged);
    }
  }
}

// Each token and each fault comes to lie over the place where one chunk ends and the next begins.
TEST(Scanner, ReadsOverTheEndsOfChunksAsExpatDoes) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  Pieces pieces(13);
  for (int round = 0; round < 400; ++round) {
    const std::string part = pieces.some(12);
    const std::string front = round % 2 == 0 ? "<r>\r\n<a>" : "<r><!--";
    const std::string behind = round % 2 == 0 ? "</a>" : "-->";
    const std::size_t cut = part.empty() ? 0 : pieces.below(part.size());
    const std::string filler(kChunk - front.size() - behind.size() - cut, ' ');
    std::string document = front;
    document.append(filler).append(behind).append(part).append("</r>");
    expectAlike(document);
  }
}

// Long runs are passed many bytes at once: each byte comes to stand at each of their places, in all that has
// runs.
TEST(Scanner, ReadsEachByteInALongRunAsExpatDoes) {
  using Around = std::pair<std::string_view, std::string_view>;
  constexpr std::array<Around, 7> kArounds{{{"<r>", "</r>"},
                                            {"<r>\n", "<e/></r>"},
                                            {"<r a=\"", "\"/>"},
                                            {"<r", "/>"},
                                            {"<r ", "=''/>"},
                                            {"<r><!--", "--></r>"},
                                            {"<r><![CDATA[", "]]></r>"}}};
  constexpr std::size_t kLength = 18;
  for (const auto& [front, behind] : kArounds) {
    for (const char filler : {'n', ' '}) {
      for (std::size_t i = 0; i < kLength * 256; ++i) {
        std::string run(kLength, filler);
        run[i / 256] = static_cast<char>(i % 256);
        expectAlike(std::string(front).append(run).append(behind));
      }
    }
  }
}

}  // namespace
