// The scanner and Expat read every document alike, and find the same fault at the same place.

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/dom/expat_reading.h"
#include "tests/support/corpus.h"

namespace {

using namespace std::string_view_literals;
using tav::test::expatReading;
using tav::test::isPlainDocument;
using tav::test::ourReading;

// What tags, texts and faults are made of.
constexpr std::array kPieces{"<a>"sv,
                             "</a>"sv,
                             "<a>"sv,
                             "</a>"sv,
                             "<a>1</a>"sv,
                             "<b>"sv,
                             "</b>"sv,
                             "</b >"sv,
                             "<b/>"sv,
                             "<c x='1'/>"sv,
                             "<d x=\"1\" y='2'>"sv,
                             "</d>"sv,
                             "<d"sv,
                             " x='1'"sv,
                             " x = \"<\""sv,
                             " y='&amp;&#10;\r\n\t'"sv,
                             " z:y='>'"sv,
                             " xmlns='u'"sv,
                             ">"sv,
                             "/>"sv,
                             "/"sv,
                             "<"sv,
                             "="sv,
                             "'"sv,
                             "\""sv,
                             " "sv,
                             "\n"sv,
                             "\r"sv,
                             "\r\n"sv,
                             "\t"sv,
                             "text"sv,
                             "]]>"sv,
                             "]]"sv,
                             "]"sv,
                             "&lt;"sv,
                             "&gt;"sv,
                             "&quot;"sv,
                             "&apos;"sv,
                             "&amp"sv,
                             "&x;"sv,
                             "&"sv,
                             ";"sv,
                             "&#65;"sv,
                             "&#x41;"sv,
                             "&#X41;"sv,
                             "&#x;"sv,
                             "&#;"sv,
                             "&#0;"sv,
                             "&#9;"sv,
                             "&#xB;"sv,
                             "&#xD800;"sv,
                             "&#xFFFE;"sv,
                             "&#x10FFFF;"sv,
                             "&#x110000;"sv,
                             "&#00000000000065;"sv,
                             "&#4294967361;"sv,
                             "&#-1;"sv,
                             "&:;"sv,
                             "<!--"sv,
                             "-->"sv,
                             "--"sv,
                             "-"sv,
                             "<!-- c -->"sv,
                             "<![CDATA["sv,
                             "<![CDATA[x]]]]>"sv,
                             "<![cdata["sv,
                             "<!"sv,
                             "<?p"sv,
                             "<?p q?>"sv,
                             "<?p?>"sv,
                             "?>"sv,
                             "?"sv,
                             "<?xml version='1.0'?>"sv,
                             "<?XML ?>"sv,
                             "<?x:y ?>"sv,
                             "\xC3\xA4"sv,
                             "\xE2\x82\xAC"sv,
                             "\xF0\x9F\x98\x80"sv,
                             "\xC3"sv,
                             "\x80"sv,
                             "\xC0\xAF"sv,
                             "\xED\xA0\x80"sv,
                             "\xEF\xBF\xBD"sv,
                             "\xEF\xBF\xBE"sv,
                             "\xF4\x90\x80\x80"sv,
                             "\xEF\xBB\xBF"sv,
                             "\0"sv,
                             "\x01"sv,
                             "\x7F"sv,
                             "<\xC3\xA4>"sv,
                             "</\xC3\xA4>"sv,
                             "<e\xC3\xA4>"sv,
                             "<a:b>"sv,
                             "</a:b>"sv,
                             "<:a>"sv,
                             "<a:>"sv,
                             "<1>"sv,
                             "<->"sv,
                             "<_.-1/>"sv};

std::string someOf(std::mt19937& random, std::size_t most) {
  std::string text;
  for (std::size_t n = random() % most; n-- > 0;) text += kPieces[random() % kPieces.size()];
  return text;
}

void expectAlike(const std::string& document) {
  if (!isPlainDocument(document)) return;
  EXPECT_EQ(ourReading(document), expatReading(document))
      << tav::test::escape(document, true).substr(0, 1000);
}

TEST(Scanner, ReadsMadeUpDocumentsAsExpatDoes) {
  std::mt19937 random(7);
  for (int round = 0; round < 40000; ++round) {
    expectAlike(someOf(random, 6));
    expectAlike(someOf(random, 3) + "<r>" + someOf(random, 8) + "</r>" + someOf(random, 3));
    expectAlike("<?xml version='1.0'" + someOf(random, 3) + "?><r" + someOf(random, 5) + "></r>");
  }
}

TEST(Scanner, ReadsDamagedDocumentsAsExpatDoes) {
  std::mt19937 random(11);
  for (const auto& c : tav::test::loadCorpus("dom/documents.txt")) {
    const std::string document = tav::test::unescape(c.input);
    expectAlike(document);
    for (std::size_t end = 0; end < document.size(); ++end) expectAlike(document.substr(0, end));
    for (int round = 0; round < 100 && !document.empty(); ++round) {
      std::string damaged = document;
      const std::size_t at = random() % damaged.size();
      if (random() % 2 == 0) damaged.erase(at, random() % 4);
      damaged.insert(std::min(at, damaged.size()), kPieces[random() % kPieces.size()]);
      expectAlike(damaged);
    }
  }
}

// Each token and each fault comes to lie over the place where one chunk ends and the next begins.
TEST(Scanner, ReadsOverTheEndsOfChunksAsExpatDoes) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  std::mt19937 random(13);
  for (int round = 0; round < 400; ++round) {
    const std::string part = someOf(random, 12);
    const std::string front = round % 2 == 0 ? "<r>\r\n<a>" : "<r><!--";
    const std::string behind = round % 2 == 0 ? "</a>" : "-->";
    const std::size_t cut = part.empty() ? 0 : random() % part.size();
    const std::string filler(kChunk - front.size() - behind.size() - cut, ' ');
    expectAlike(front + filler + behind + part + "</r>");
  }
}

}  // namespace
