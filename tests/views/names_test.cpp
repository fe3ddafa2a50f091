#include <expat.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "tests/support/corpus.h"
#include "views/dsv_reader.h"

namespace {

using tav::test::escape;
using tav::test::unescape;

std::string utf8(char32_t c) {
  if (c < 0x80) return {static_cast<char>(c)};
  const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  std::string text{static_cast<char>((0xFF00U >> (more + 1)) | (c >> (6 * more)))};
  for (int i = more - 1; i >= 0; --i) text += static_cast<char>(0x80U | ((c >> (6 * i)) & 0x3FU));
  return text;
}

/// Each line through `f`, with \xHH for bytes that a text file cannot hold well.
template <class F> std::string forLines(const std::string& input, F f) {
  std::istringstream lines(input);
  std::string result;
  for (std::string line; std::getline(lines, line);)
    (result += result.empty() ? "" : "\n") += escape(f(unescape(line)).view());
  return result;
}

TEST(StringEscape, Corpus) {
  tav::test::checkCorpus("views/escape.txt", [](const std::string& input) {
    return forLines(input, [](const std::string& line) { return TAVDsvReader::stringEscape(line); });
  });
}

TEST(StringUnescape, Corpus) {
  tav::test::checkCorpus("views/unescape.txt", [](const std::string& input) {
    return forLines(input, [](const std::string& line) { return TAVDsvReader::stringUnescape(line); });
  });
}

TEST(StringEscape, TwiceIsOnceAndUnescapingGivesTheTextBack) {
  for (char32_t c = 0x20; c <= 0x10FFFF; c = c == 0xD7FF ? 0xE000 : c == 0xFFFD ? 0x10000 : c + 1) {
    if (c > 0x10000 && c % 0x1000 > 2 && c % 0x1000 < 0xFFE) continue;  // the planes are alike inside
    for (const std::string& text : {utf8(c), "a" + utf8(c) + "1"}) {
      const TAVString once = TAVDsvReader::stringEscape(text);
      ASSERT_EQ(TAVDsvReader::stringEscape(once), once) << escape(text, true);
      ASSERT_EQ(TAVDsvReader::stringUnescape(once), text) << escape(text, true);
    }
  }
}

bool isName(XML_Parser parser, const std::string& name) {
  XML_ParserReset(parser, "UTF-8");
  const std::string document = "<" + name + "/>";
  return XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
}

TEST(StringEscape, KeepsExactlyWhatAnXmlParserTakesForAName) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                            &XML_ParserFree);
  const std::string markup = ":!/=>?\"'< \t\r\n";  // means something else inside a tag
  for (char32_t c = 0x20; c <= 0xFFFF; c = c == 0xD7FF ? 0xE000 : c + 1) {
    const std::string text = utf8(c);
    if (markup.find(text) != std::string::npos) continue;
    for (const std::string& name : {text, "a" + text})
      ASSERT_EQ(TAVDsvReader::stringEscape(name) == name, isName(parser.get(), name)) << escape(name, true);
  }
}

}  // namespace
