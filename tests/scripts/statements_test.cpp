#include <gtest/gtest.h>

#include "expressions/script_statements.h"
#include "tests/support/corpus.h"

namespace {

void append(std::string& line, std::string_view word, std::string_view text) {
  if (!text.empty()) line.append(" ").append(word).append("<").append(tav::test::escape(text)).append(">");
}

std::string lineOf(const tav::ScriptStatement& statement, std::size_t number) {
  std::string line = std::to_string(number) + " ";
  line += tav::statementWords(statement.kind);
  if (statement.scope != tav::ScriptStatement::kNoScope) line += " in " + std::to_string(statement.scope);
  line += statement.hidden ? " hidden" : "";
  line += statement.dynamic ? " dynamic" : "";
  append(line, "", statement.name);
  append(line, "if", statement.condition);
  append(line, "property", statement.property);
  append(line, "cells", statement.range);
  append(line, "=", statement.expression);
  for (const auto& property : statement.properties) append(line, property.name, property.value);
  return line;
}

/// A line for each statement, with what is wrong with it below.
std::string show(const std::string& input) {
  const std::string script = tav::test::unescape(input);
  std::string text;
  std::size_t number = 0;
  for (const tav::ScriptStatement& statement : tav::parseScript(script)) {
    text += (text.empty() ? "" : "\n") + lineOf(statement, number++);
    if (statement.fault)
      text += "\n! " + tav::placeInText(script, statement.fault.offset).str() + ": expected " +
              std::string(statement.fault.expected);
  }
  return text;
}

std::string repeated(std::string_view part, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

TEST(Statements, AreWhatTheyAre) {
  tav::test::checkCorpus("scripts/statements.txt", show);
}

TEST(Statements, EveryPrefixOfEveryCaseIsRead) {
  for (const auto& one : tav::test::loadCorpus("scripts/statements.txt"))
    for (std::size_t size = 0; size <= one.input.size(); ++size) show(one.input.substr(0, size));
}

/// A fault costs its own statement: what stands behind the semicolon is read as if it stood alone.
TEST(Statements, OneThatFailsLosesOnlyItself) {
  const std::string good = "CREATE MEMBER CURRENTCUBE.[Measures].[x] AS 1, VISIBLE = 0";
  for (const char* bad :
       {"CREATE", "CREATE MEMBER", "SCOPE", "x", "(", "IF", "IF 1 THEN", "/* ", "'", "\""}) {
    const std::string script = std::string(bad) + ";" + good;
    const std::vector<tav::ScriptStatement> statements = tav::parseScript(script);
    ASSERT_EQ(statements.size(), 2U) << bad;
    EXPECT_TRUE(statements[0].fault) << bad;
    EXPECT_FALSE(statements[1].fault) << bad;
    EXPECT_EQ(statements[1].text, good) << bad;
  }
}

/// Scripts in which something that is searched for again for each statement takes hours.
TEST(Statements, ReadsHostileScriptsInOnePass) {
  constexpr int kMany = 300000;
  for (const char* piece : {"[a;", "'a;", "\"a;", "/*a;", "SCOPE(", "SCOPE(a);", "END SCOPE;", "CREATE ", "(",
                            ";", "IF ", "CASE ", "a . b ,", "--;", "CREATE SET s . t AS {} ;"})
    tav::parseScript(repeated(piece, kMany));
  EXPECT_EQ(tav::parseScript(repeated("[a;", kMany)).size(), static_cast<std::size_t>(kMany));
}

}  // namespace
