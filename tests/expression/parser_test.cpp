#include "framework/expression/parser.h"
#include "framework/std/dotted_name.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "tests/support/corpus.h"

namespace {

using tav::ExpressionLanguage;
using tav::ExpressionTree;
using tav::parseExpression;

/// The tree, and behind it the fault.
std::string show(const std::string& text, ExpressionLanguage language) {
  const ExpressionTree tree = parseExpression(text, language);
  std::string result = tree.root == tav::ExpressionNode::kNone ? "nothing" : dump(tree);
  if (tree.fault)
    result += " ! " + std::to_string(tree.fault.offset) + ": " + std::string(tree.fault.expected);
  return result;
}

void checkLines(std::string_view file, ExpressionLanguage language) {
  tav::test::checkCorpus(file, [&](const std::string& input) {
    std::istringstream lines(input);
    std::string result;
    bool first = true;
    for (std::string line; std::getline(lines, line); first = false)
      (result += first ? "" : "\n") += tav::test::escape(show(tav::test::unescape(line), language));
    return result;
  });
}

TEST(Expression, MdxCorpus) {
  checkLines("expression/mdx.txt", ExpressionLanguage::mdx);
}
TEST(Expression, MdxFunctions) {
  checkLines("expression/functions.txt", ExpressionLanguage::mdx);
}
TEST(Expression, SqlCorpus) {
  checkLines("expression/sql.txt", ExpressionLanguage::sql);
}

// Laws, over every expression of the corpora.

struct Sample {
  std::string text;
  ExpressionLanguage language;
};

std::vector<Sample> samples() {
  std::vector<Sample> all;
  const auto load = [&](std::string_view file, ExpressionLanguage language) {
    for (const tav::test::CorpusCase& given : tav::test::loadCorpus(file)) {
      std::istringstream lines(given.input);
      for (std::string line; std::getline(lines, line);) all.push_back({tav::test::unescape(line), language});
    }
  };
  load("expression/mdx.txt", ExpressionLanguage::mdx);
  load("expression/functions.txt", ExpressionLanguage::mdx);
  load("expression/sql.txt", ExpressionLanguage::sql);
  return all;
}

/// The references of a tree in the order of visiting, one a line. Checks on its way that every node but the
/// root hangs in one place and that every text is a piece of the source.
std::string references(const ExpressionTree& tree) {
  std::string text;
  std::size_t reached = 0;
  std::vector<std::uint32_t> left;
  if (tree.root != tav::ExpressionNode::kNone) left.push_back(tree.root);
  while (!left.empty()) {
    const tav::ExpressionNode& node = tree.nodes[left.back()];
    left.pop_back();
    ++reached;
    EXPECT_LE(node.begin, node.end);
    EXPECT_LE(node.end, tree.source.size());
    if (node.kind == tav::ExpressionNode::Kind::reference) text.append(node.name) += "\n";
    if (node.next != tav::ExpressionNode::kNone) left.push_back(node.next);
    if (node.first != tav::ExpressionNode::kNone) left.push_back(node.first);
  }
  EXPECT_EQ(reached, tree.nodes.size());
  return text;
}

std::string references(const std::string& text, ExpressionLanguage language) {
  return references(parseExpression(text, language));
}

TEST(ExpressionLaw, EveryPrefixIsRead) {
  for (const Sample& sample : samples()) {
    for (std::size_t size = 0; size <= sample.text.size(); ++size) {
      const std::string prefix = sample.text.substr(0, size);
      const ExpressionTree tree = parseExpression(prefix, sample.language);
      references(tree);
      EXPECT_TRUE(!tree.fault || tree.fault.offset <= size) << prefix;
    }
  }
}

/// The text with something between its tokens, and around the dots of its references.
std::string spread(const Sample& sample, std::string_view blank) {
  std::string result(blank);
  tav::PieceBuffer pieces;
  tav::Lexer lexer(sample.text, sample.language, pieces);
  std::size_t end = 0;
  for (tav::Token token = lexer.next(false); token.kind != tav::Token::Kind::end; token = lexer.next(false)) {
    std::string_view text = std::string_view(sample.text).substr(token.begin, token.end - token.begin);
    while (token.parts > 1) {
      const std::size_t length = tav::namePartLength(token.text);
      result.append(token.text.substr(0, length)).append(blank).append(".").append(blank);
      text = token.text = token.text.substr(length + 1);
      --token.parts;
    }
    end = token.end;
    result.append(text);
    if (end < sample.text.size()) result.append(blank);  // what is never closed would take it in
  }
  return result + sample.text.substr(end);
}

TEST(ExpressionLaw, BlanksAndCommentsBetweenTokensChangeNothing) {
  for (const Sample& sample : samples()) {
    const ExpressionTree plain = parseExpression(sample.text, sample.language);
    if (sample.text.find('!') != std::string::npos && plain.fault) continue;  // a sign of two characters
    for (const std::string_view blank : {" ", "\r\n\t", " /* ] ' */", " -- ( \"\n", "\xE2\x80\x83"}) {
      const std::string wide = spread(sample, blank);
      const ExpressionTree tree = parseExpression(wide, sample.language);
      EXPECT_EQ(dump(tree), dump(plain)) << wide;
      EXPECT_EQ(static_cast<bool>(tree.fault), static_cast<bool>(plain.fault)) << wide;
    }
  }
}

TEST(ExpressionLaw, AFaultLosesNoReferenceBeforeOrBehindIt) {
  // What may stand between two expressions in brackets; none of it opens or closes what is around it.
  const std::string faults[] = {" ",     " + * ", " ? ",         " ] + ",  " . ",
                                " 1 2 ", " NOT ", " + f(,(,)) ", "} THEN "};
  for (const Sample& sample : samples()) {
    if (parseExpression(sample.text, sample.language).fault || sample.text.find(';') != std::string::npos)
      continue;
    const std::string piece = "{" + sample.text + "\n}";
    if (parseExpression(piece, sample.language).fault) continue;
    const std::string once = references(piece, sample.language);
    for (const std::string& fault : faults) {
      std::string text = piece;
      text.append(fault).append(piece);
      EXPECT_TRUE(parseExpression(text, sample.language).fault) << text;
      EXPECT_EQ(references(text, sample.language), once + once) << text;
    }
    EXPECT_EQ(references("(f({CASE WHEN NOT " + piece, sample.language), once) << piece;
  }
}

TEST(ExpressionLaw, DamagedExpressionsAreRead) {
  const std::string pieces[] = {
      "[",  "]",       "(",  ")",  "{",  "}",    "'",     "\"",   ".",    ",",
      ";",  "&",       "!",  "/*", "*/", "--",   " ",     "\xE2", "END",  "CASE",
      "AS", "BETWEEN", "IN", "N'", "1.", "&[1]", "OVER(", ":",    "\x7F", std::string(1, '\0')};
  std::mt19937 random(1);
  for (const Sample& sample : samples()) {
    for (int round = 0; round < 40; ++round) {
      std::string text = sample.text;
      for (int i = 0; i < 3; ++i) {
        const std::size_t place = random() % (text.size() + 1);
        text.replace(place, random() % 3, pieces[random() % std::size(pieces)]);
      }
      references(text, sample.language);
    }
  }
}

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

TEST(ExpressionDepth, AThousandLevelsAreNoFault) {
  for (const auto& [open, close] :
       {std::pair("(", ")"), {"{", "}"}, {"f(", ")"}, {"CASE WHEN ", " THEN 1 END"}}) {
    const std::string deep = repeated(open, 1000) + "[a]" + repeated(close, 1000);
    EXPECT_FALSE(parseExpression(deep, ExpressionLanguage::mdx).fault) << open;
    const ExpressionTree deeper = parseExpression(open + deep + close, ExpressionLanguage::mdx);
    EXPECT_EQ(deeper.fault.expected, "at most 1,000 levels") << open;
  }
}

TEST(ExpressionDepth, BracketsBeyondItTakeNoMemory) {
  for (const char* open : {"(", "{", "f("}) {
    const std::string text = repeated(open, 1'000'000);
    EXPECT_LT(parseExpression(text, ExpressionLanguage::mdx).nodes.size(), 2'000U) << open;
    EXPECT_LT(parseExpression(text, ExpressionLanguage::sql).nodes.size(), 2'000U) << open;
  }
}

TEST(ExpressionDepth, NothingIsLostInOrBehindAnyDepth) {
  for (const auto& [open, close] : {std::pair("(", ")"),
                                    {"{", ""},
                                    {"f(", ")"},
                                    {"CASE WHEN ", ""},
                                    {"- ", ""},
                                    {"NOT ", ""},
                                    {"[a].f(1).g(", ")"}}) {
    const std::string text = repeated(open, 100'000) + "[in]" + repeated(close, 100'000) + " + [behind]";
    const ExpressionTree tree = parseExpression(text, ExpressionLanguage::mdx);
    EXPECT_TRUE(references(tree).ends_with("[in]\n[behind]\n")) << open;
    EXPECT_FALSE(dump(tree).empty());
  }
}

}  // namespace
