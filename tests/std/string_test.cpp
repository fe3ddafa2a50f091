#include "framework/std/string.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/corpus.h"

namespace {

int number(const std::string& text) {
  return std::stoi(text);
}

// One operation with its arguments, separated by '|', and its result in brackets.
std::string evaluate(const std::string& line) {
  std::vector<std::string> parts;
  std::istringstream in(line + "|");
  for (std::string part; std::getline(in, part, '|');) parts.push_back(tav::test::unescape(part));
  const std::string operation = parts.at(0);
  const TAVString text = parts.at(1);
  const auto argument = [&](std::size_t i) { return parts.at(i + 2); };
  const auto shown = [](const TAVString& s) { return "[" + tav::test::escape(s.str(), true) + "]"; };
  const auto answer = [](bool yes) { return std::string(yes ? "yes" : "no"); };
  if (operation == "equals") return answer(text.equals(argument(0), argument(1) == "exact"));
  if (operation == "startsWith") return answer(text.startsWith(argument(0), argument(1) == "exact"));
  if (operation == "endsWith") return answer(text.endsWith(argument(0), argument(1) == "exact"));
  if (operation == "find") return std::to_string(text.find(argument(0), number(argument(1))));
  if (operation == "at") return std::to_string(static_cast<unsigned char>(text[number(argument(0))]));
  if (operation == "mid" && parts.size() == 3) return shown(text.mid(number(argument(0))));
  if (operation == "mid") return shown(text.mid(number(argument(0)), number(argument(1))));
  if (operation == "left") return shown(text.left(number(argument(0))));
  if (operation == "trim") return shown(text.trim());
  if (operation == "trimSpaces") return shown(text.trimSpaces());
  if (operation == "trimLeadingSpaces") return shown(text.trimLeadingSpaces());
  if (operation == "toUpper") return shown(text.toUpper());
  if (operation == "toLower") return shown(text.toLower());
  if (operation == "replaceAll") return shown(text.replaceAll(argument(0), argument(1)));
  if (operation == "stricmp") {
    const int order = _stricmp(text.c_str(), argument(0).c_str());
    return order < 0 ? "less" : order > 0 ? "more" : "same";
  }
  return "no such operation";
}

TEST(String, Corpus) {
  tav::test::checkCorpus("std/strings.txt", [](const std::string& input) {
    std::istringstream lines(input);
    std::string shown;
    for (std::string line; std::getline(lines, line);) shown += (shown.empty() ? "" : "\n") + evaluate(line);
    return shown;
  });
}

TEST(String, HashIsTheSameInEveryProcess) {
  EXPECT_EQ(stringHashCode(""), 2166136261U);
  EXPECT_EQ(stringHashCode("a"), 0xE40C292CU);  // as published for FNV-1a
  EXPECT_EQ(stringHashCode("foobar"), 0xBF9CF968U);
}

TEST(String, BytesOfEveryKindAreKept) {
  const TAVString text = std::string("a\0b", 3);
  EXPECT_EQ(text.length(), 3);
  EXPECT_EQ(text + TAVString('c'), TAVString(std::string("a\0bc", 4)));
  EXPECT_EQ(TAVString(static_cast<const char*>(nullptr)), "");
  EXPECT_TRUE(TAVString::getEmptyString().empty());
  EXPECT_STREQ(TAVString().c_str(), "");
}

TEST(String, CopiesAreTheirOwn) {
  TAVString text = "ab";
  const TAVString copy = text;
  text += text;
  text += "";
  EXPECT_STREQ(text.c_str(), "abab");
  const TAVString& same = text;
  text = same;
  const TAVString moved = std::move(text);
  EXPECT_EQ(moved, "abab");
  text = copy;
  EXPECT_EQ(text, "ab");
  text = "";
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(copy + text + "c", "abc");
  EXPECT_LT(text, copy);
}

}  // namespace
