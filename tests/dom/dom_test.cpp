#include "framework/dom/dom.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "framework/std/exception.h"
#include "tests/dom/dump.h"
#include "tests/support/corpus.h"

namespace {

using tav::test::parseAndDump;

std::string withoutLines(const std::string& dumped) {
  std::string text;
  bool number = true;
  for (const char c : dumped) {
    if (c == '\n') number = true;
    if (number && c >= '0' && c <= '9') continue;
    if (c != '\n' && c != ' ') number = false;
    text += c;
  }
  return text;
}

std::string around(std::string_view document, std::size_t blanks) {
  // Behind the declaration, which must come first.
  const std::size_t at = document.starts_with("<?xml") ? document.find("?>") + 2 : 0;
  return std::string(document.substr(0, at)) + std::string(blanks, ' ') + std::string(document.substr(at));
}

TEST(Dom, Corpus) {
  tav::test::checkCorpus("dom/documents.txt",
                         [](const std::string& input) { return parseAndDump(tav::test::unescape(input)); });
}

TEST(Dom, EveryTruncationIsAnErrorWithItsPlace) {
  for (const auto& c : tav::test::loadCorpus("dom/documents.txt")) {
    const std::string document = tav::test::unescape(c.input);
    const std::size_t end = document.rfind('>');  // what follows the root may be missing
    if (c.expected.find("[TAVDOM") != std::string::npos || document.ends_with("-->")) continue;
    for (std::size_t n = 0; n < end; ++n) {
      TAVDOM dom(nullptr);
      EXPECT_THROW(dom.parseText(document.substr(0, n), "doc"), TAVException)
          << c.name << ", " << n << " bytes";
    }
  }
}

// Any other exception, and whatever the sanitizers see, fails it.
TEST(Dom, DamagedDocumentsAreATreeOrOneError) {
  std::mt19937 random(1);
  for (const auto& c : tav::test::loadCorpus("dom/documents.txt")) {
    const std::string document = tav::test::unescape(c.input);
    for (int round = 0; round < 200 && !document.empty(); ++round) {
      std::string damaged = document;
      for (int i = 0; i < 3; ++i) {
        const std::size_t at = random() % damaged.size();
        const std::string part = damaged.substr(at, 1 + random() % 8);
        if (random() % 3 == 0) damaged[at] = static_cast<char>(random());
        if (random() % 3 == 0) damaged.insert(random() % damaged.size(), part);
        if (random() % 3 == 0 && part.size() < damaged.size()) damaged.erase(at, part.size());
      }
      EXPECT_NE(parseAndDump(damaged), "") << c.name << ", round " << round;
    }
  }
}

// Blanks in front shift the document over the place where one chunk ends and the next begins.
TEST(Dom, TheTreeIsTheSameWhereverAChunkEnds) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  for (const auto& c : tav::test::loadCorpus("dom/documents.txt")) {
    const std::string document = tav::test::unescape(c.input);
    if (document.empty() || c.expected.find("[TAVDOM") != std::string::npos) continue;
    // Blanks of one byte would spoil UTF-16, and none may stand before a mark.
    if (document.find('\0') != std::string::npos || document.starts_with("\xEF")) continue;
    const std::string expected = withoutLines(parseAndDump(document));
    for (std::size_t cut = 1; cut < document.size(); cut += 3)
      EXPECT_EQ(withoutLines(parseAndDump(around(document, kChunk - cut))), expected)
          << c.name << ", " << cut;
  }
}

TEST(Dom, LookUpsFindTheFirst) {
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText(
      R"(<r xmlns:x="urn:x" xmlns:y="urn:x" y:n="ns" n="plain" m=""><a>1</a><x:b>2</x:b><a>3</a><b>4</b></r>)",
      "");
  EXPECT_EQ(root.getFirstElementValue("a"), "1");
  EXPECT_EQ(root.getFirstElementValue("b"), "4");
  EXPECT_EQ(root.getFirstElementLocal("b")->getValue(), "2");
  EXPECT_EQ(root.getFirstElement("A"), nullptr);
  EXPECT_EQ(root.getFirstElementLocal("x:b"), nullptr);
  EXPECT_EQ(root.getFirstElementValue("none"), "");
  EXPECT_EQ(root.getElement(2)->getValue(), "3");
  EXPECT_EQ(root.getElement(4), nullptr);
  EXPECT_EQ(root.getElement(-1), nullptr);
  EXPECT_EQ(root.getAttribute("n"), "plain");
  EXPECT_EQ(root.getAttribute("y:n"), "ns");
  EXPECT_EQ(root.getAttribute("none"), "");
  EXPECT_EQ(root.getAttributeNS("urn:x", "n"), "ns");
  EXPECT_EQ(root.getAttributeNS("", "n"), "plain");
  EXPECT_EQ(root.getAttributeNS("urn:none", "n"), "");
}

// Children come in rounds of `tags` different tags; every one of them must be found at its first place.
TEST(Dom, LookUpsFindTheFirstAmongManyChildren) {
  for (const int tags : {1, 2, 31, 32, 33, 1000}) {
    std::string document = "<r>";
    for (int i = 0; i < 2 * tags + 30; ++i) {
      const std::string tag = "t" + std::to_string(i % tags);
      document.append("<")
          .append(tag)
          .append(">")
          .append(std::to_string(i))
          .append("</")
          .append(tag)
          .append(">");
    }
    TAVDOM dom(nullptr);
    const TAVDOMElement& root = *dom.parseText(document + "</r>", "");
    for (int i = 0; i < tags; ++i)
      EXPECT_EQ(root.getFirstElementValue("t" + std::to_string(i)), std::to_string(i)) << tags;
    EXPECT_EQ(root.getFirstElement("t" + std::to_string(tags)), nullptr);
    EXPECT_EQ(root.getFirstElement(""), nullptr);
  }
}

TEST(Dom, TreesOfSeveralDocumentsLiveSideBySide) {
  TAVDOM dom(nullptr);
  const TAVDOMElement* first = dom.parseText("<a xmlns='urn:1'><b>1</b></a>", "");
  EXPECT_THROW(dom.parseText("<a xmlns='urn:2'><b>", ""), TAVException);
  const TAVDOMElement* second = dom.parseText("<a><b>2</b></a>", "");
  EXPECT_EQ(tav::test::dump(*first), "1 a{urn:1} xmlns=[urn:1]\n  1 b{urn:1} [1]");
  EXPECT_EQ(tav::test::dump(*second), "1 a\n  1 b [2]") << "what broke off inside declares nothing here";
}

bool isDrawing(const tav::ElementsAround& around) {
  return around.grandparent.local == "list" && around.parent.written == "note" && !around.before.empty() &&
         around.before.front().getValue() == "drawing";
}

// Behind a document type it is not the scanner that reads.
TEST(Dom, UnkeptContentIsCheckedAndLeftOut) {
  constexpr std::string_view kNotes =
      "<list><note><n>drawing</n><v a='1'>t<b c='d'>&amp;<e/>u</b><![CDATA[s]]><v>x</v></v><w>y</w></note>"
      "<note><n>other</n><v><b/></v></note><v>z</v><n>drawing</n><v/></list>";
  constexpr std::string_view kKept =
      "1 list\n  1 note\n    1 n [drawing]\n    1 v a=[1]\n    1 w [y]\n"
      "  1 note\n    1 n [other]\n    1 v\n      1 b\n  1 v [z]\n  1 n [drawing]\n  1 v";
  for (const std::string front : {"", "<!DOCTYPE list>"}) {
    TAVDOM dom(nullptr);
    dom.setUnkept({"v", isDrawing});
    EXPECT_EQ(tav::test::dump(*dom.parseText(front + std::string(kNotes), "")), kKept);
    try {
      dom.parseText(front + "<list><note><n>drawing</n><v>\n<b></c></v></note></list>", "doc");
      FAIL() << "no exception";
    } catch (const TAVException& e) {
      EXPECT_GE(e.getMessage().find("doc:2:"), 0) << e.getMessage().str();
    }
    EXPECT_EQ(tav::test::dump(*dom.parseText("<list>1</list>", "")), "1 list [1]")
        << "after it broke off inside";
  }
}

TEST(Dom, WhatIsReleasedLeavesAllElseAsItWas) {
  constexpr std::int32_t kRows = 100'000;
  std::string document = "<r><first>";
  for (std::int32_t i = 0; i < kRows; ++i) document += i % 1000 == 999 ? "<b/>" : "<a/>";
  document += "<last/></first><rows>";
  for (std::int32_t i = 0; i < kRows; ++i)
    document += "<row t='" + std::to_string(i) + "'>x<a/><a>" + std::to_string(i) + " is a text</a></row>";
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText(document + "</rows><last><a>1</a></last></r>", "");
  const TAVDOM::Place first = dom.endOf(*root.getFirstElement("first"));
  TAVDOM::Place from = first;
  const std::string_view text = root.getElement(1)->getElement(7)->getElement(1)->getValue();
  const TAVDOMElement& rows = *root.getFirstElement("rows");
  for (std::int32_t i = 0; i < kRows; ++i) {
    const TAVDOMElement& row = *rows.getElement(i);
    ASSERT_EQ(row.getElement(1)->getValue(), std::to_string(i) + " is a text");
    from = dom.release(from, row);
    ASSERT_EQ(row.getAttribute("t"), std::to_string(i));
    ASSERT_EQ(row.getValue(), "x");
  }
  EXPECT_NE(from.block, first.block);
  EXPECT_EQ(text, "7 is a text");
  dom.release(from, rows);
  EXPECT_EQ(root.getFirstElement("last")->getFirstElementValue("a"), "1");
  const TAVDOMElement& whole = *root.getFirstElement("first");
  for (std::int32_t i = 0; i < kRows; ++i)
    ASSERT_EQ(whole.getElement(i)->getTagName(), i % 1000 == 999 ? "b" : "a");
  EXPECT_EQ(whole.getFirstElement("last"), whole.getElement(kRows));
}

std::string messageOf(const std::string& path) {
  TAVDOM dom(nullptr);
  try {
    dom.parseFile(TAVFile(path));
  } catch (const TAVException& e) {
    return e.getMessage().str();
  }
  return "no exception";
}

TEST(Dom, FilesAreReadAndNamedInErrors) {
  const tav::test::TemporaryFolder folder;
  const auto in = [&](std::string_view name) { return (folder.path() / name).string(); };
  TAVDOM dom(nullptr);
  std::uint64_t read = 0, total = 0;
  dom.setProgress([&](std::uint64_t r, std::uint64_t t) {
    read = r;
    total = t;
  });
  EXPECT_EQ(dom.parseFile(TAVFile(folder.write("good", "<a>1</a>")))->getValue(), "1");
  EXPECT_EQ(read, 8U);
  EXPECT_EQ(total, 8U);
  EXPECT_EQ(
      messageOf(folder.write("bad", "<a>\n</b>")),
      "[TAVDOM_F0001] " + in("bad") + ":2:3: the end tag does not belong to <a>, which begins on line 1");
  EXPECT_EQ(messageOf(folder.write("empty", "")),
            "[TAVDOM_F0001] " + in("empty") + ":1:1: the file is empty");
  EXPECT_EQ(messageOf(in("none")), "[TAVDOM_F0001] " + in("none") + ": No such file or directory");
  EXPECT_EQ(messageOf(folder.path().string()),
            "[TAVDOM_F0001] " + folder.path().string() + ": it is a directory");
}

struct ThrowingLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override { throw TAVException("from the log", ""); }
};

TEST(Dom, WhatTheLogThrowsComesThrough) {
  ThrowingLog log;
  TAVDOM dom(&log);
  try {
    dom.parseText("<!DOCTYPE a SYSTEM 'b'><a/>", "doc");
    FAIL();
  } catch (const TAVException& e) {
    EXPECT_EQ(e.getMessage(), "from the log");
  }
}

}  // namespace
