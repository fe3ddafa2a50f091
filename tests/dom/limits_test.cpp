#include <gtest/gtest.h>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"
#include "tests/support/timing.h"

namespace {

std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

TEST(DomLimits, DepthCostsNoCallStack) {
  constexpr std::size_t kDepth = 500000;
  TAVDOM dom(nullptr);
  const TAVDOMElement* element =
      dom.parseText(repeated("<a>", kDepth) + "x" + repeated("</a>", kDepth), "deep");
  std::size_t depth = 1;
  for (; element->getElementCount() > 0; ++depth) element = element->getElement(0);
  EXPECT_EQ(depth, kDepth);
  EXPECT_EQ(element->getValue(), "x");
}

TEST(DomLimits, HugeTextAndHugeAttributeAreWhole) {
  const std::string huge(std::size_t{50} << 20, 'x');
  TAVDOM dom(nullptr);
  const TAVDOMElement* root = dom.parseText("<a b=\"" + huge + "\">" + huge + "</a>", "huge");
  EXPECT_EQ(root->getValue().size(), huge.size());
  EXPECT_EQ(root->getAttribute("b").size(), huge.size());
}

// A walk would need 10,000 million comparisons.
TEST(DomLimits, LookUpsStayFastAmongManyTags) {
  constexpr int kTags = 100000;
  std::string document = "<r>";
  for (int i = 0; i < kTags; ++i) document += "<t" + std::to_string(i) + "/>";
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText(document + "</r>", "wide");
  EXPECT_LT(tav::test::secondsOf([&] {
              for (int i = 0; i < kTags; ++i) {
                ASSERT_EQ(root.getFirstElement("t" + std::to_string(i)), root.getElement(i));
              }
            }),
            10.0);
}

void expectTooMuch(const std::string& document) {
  constexpr std::string_view kCause = "its document type makes more than 1 MB of text of it";
  TAVDOM dom(nullptr);
  try {
    dom.parseText(document, "bomb");
    FAIL() << "no exception";
  } catch (const TAVException& e) {
    EXPECT_GT(e.getMessage().find(kCause), 0) << e.getMessage().str();
  }
}

// Each takes another way round the bound: by depth, in attributes, by length, by many small references, by
// long names of short entities, by default values that are long or many.
TEST(DomLimits, DocumentTypesCannotBlowUp) {
  std::string nested = "<!DOCTYPE a [<!ENTITY e0 \"lol\">";
  for (int i = 1; i < 10; ++i)
    nested +=
        "<!ENTITY e" + std::to_string(i) + " \"" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
  expectTooMuch(nested + "]><a>&e9;</a>");
  expectTooMuch(nested + "]><a b=\"&e9;\"/>");
  expectTooMuch("<!DOCTYPE a [<!ENTITY e \"" + std::string(100000, 'x') + "\">]><a>" + repeated("&e;", 20) +
                "</a>");
  expectTooMuch("<!DOCTYPE a [<!ENTITY e \"" + repeated("x", 40) + "\">]><a>" +
                repeated("<b>&e;</b>", 50000) + "</a>");
  const std::string name(1000, 'e');
  expectTooMuch("<!DOCTYPE a [<!ENTITY " + name + " \"" + repeated("<b c='d'/>", 10000) + "\">]><a>" +
                repeated("&" + name + ";", 20) + "</a>");
  expectTooMuch("<!DOCTYPE r [<!ATTLIST a b CDATA '" + std::string(100000, 'x') + "'>]><r>" +
                repeated("<a/>", 20) + "</r>");
  std::string many = "<!DOCTYPE r [<!ATTLIST a";
  for (int i = 0; i < 1000; ++i) many.append(" b").append(std::to_string(i)).append(" CDATA ''");
  expectTooMuch(many + ">]><r>" + repeated("<a/>", 1000) + "</r>");
}

// Entities of five characters, and what a longer encoding makes of a document, are no expansion.
TEST(DomLimits, DocumentTypesMayStandBeforeLargeDocuments) {
  TAVDOM dom(nullptr);
  const std::string type = "<?xml version='1.0' encoding='windows-1252'?><!DOCTYPE r [<!ENTITY e 'x'>]>";
  dom.parseText(type + "<r>" + repeated("<a b='\x80'>\x80\x80&lt;&e;</a>", 200000) + "</r>", "large");
}

// 10 KB for 4 bytes of document if each had a copy.
TEST(DomLimits, DefaultValuesAreKeptOnce) {
  const std::string value(10000, 'x');
  TAVDOM dom(nullptr);
  const TAVDOMElement* root = dom.parseText(
      "<!DOCTYPE r [<!ATTLIST a b CDATA '" + value + "'>]><r>" + repeated("<a/>", 100) + "</r>", "defaults");
  EXPECT_EQ(root->getElement(0)->getAttribute("b"), value);
  EXPECT_EQ(root->getElement(0)->getAttribute("b").data(), root->getElement(99)->getAttribute("b").data());
}

// The first tag of every chunk begins in the one before: its line must be counted there.
TEST(DomLimits, LinesAreCountedThroughAllChunks) {
  constexpr int kLines = 300000;
  TAVDOM dom(nullptr);
  const TAVDOMElement& root = *dom.parseText("<r>\n" + repeated("<abc\nd='1'/>\n", kLines) + "</r>", "lines");
  ASSERT_EQ(root.getElementCount(), kLines);
  for (std::int32_t i = 0; i < kLines; ++i)
    ASSERT_EQ(root.getElement(i)->getLine(), static_cast<std::uint32_t>(2 + 2 * i));
}

}  // namespace
