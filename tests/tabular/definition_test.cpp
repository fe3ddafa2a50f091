// Whole definitions: what becomes of each kind of object, and what is said about a file that is none.

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "framework/model/tree_walk.h"
#include "tests/support/model_text.h"
#include "tests/tabular/importer_run.h"

namespace {

using nlohmann::json;
using tav::test::ImporterRun;

std::string showFault(const std::string& input) {
  const ImporterRun run = tav::test::importText(tav::test::unescape(input));
  std::string text = run.messages + run.errors;
  if (run.exitCode == 0) text += "model " + tav::test::escape(run.model->getName().str(), true);
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

std::string repeat(std::string_view text, std::size_t times) {
  std::string repeated;
  for (std::size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(TabularDefinition, EveryKindOfObject) {
  tav::test::checkCorpus("tabular/definitions.txt", [](const std::string& input) {
    const ImporterRun run = tav::test::importText(input);
    return run.messages + run.errors + (run.model ? tav::test::modelText(*run.model) : "");
  });
}

TEST(TabularDefinition, FaultsHaveAPlaceAndACause) {
  tav::test::checkCorpus("tabular/faults.txt", showFault);
}

TEST(TabularDefinition, EveryTruncationIsRefusedAtItsEnd) {
  const std::string whole = R"({"name":"A","model":{"tables":[{"name":"T","columns":[{"name":"C"}]}]}})";
  for (std::size_t n = 1; n < whole.size(); n += 5) {
    const ImporterRun run = tav::test::importText(whole.substr(0, n));
    EXPECT_EQ(run.exitCode, 1) << n;
    EXPECT_EQ(run.errors.rfind("[TAVTAB_F0002] FILE.bim:1:", 0), 0u) << n << ": " << run.errors;
    EXPECT_EQ(run.errors.find('\n'), run.errors.size() - 1) << run.errors;
  }
}

TEST(TabularDefinition, DepthIsRefusedWithItsPlace) {
  for (const char* open : {"[", "{\"a\":"}) {
    const ImporterRun run = tav::test::importText("{\"model\":" + repeat(open, 100'000));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("more than 500 levels of nesting"), std::string::npos) << run.errors;
  }
}

TEST(TabularDefinition, DeepTextsInADefinitionEndInAModel) {
  json tables = json::array();
  for (const char* piece : {"(", "select (", "let a = ", "f(", "{", "with a as (", "[a=", "from (select "}) {
    json sources = json::array();
    const std::string deep = repeat(piece, 20'000);
    sources.push_back({{"source", {{"type", "query"}, {"query", "select a from " + deep}}}});
    sources.push_back({{"source", {{"type", "query"}, {"query", deep}}}});
    sources.push_back({{"source", {{"type", "m"}, {"expression", deep}}}});
    tables.push_back({{"name", piece},
                      {"columns", json::array({{{"name", "c"}, {"sourceColumn", "c"}}})},
                      {"measures", json::array({{{"name", piece}, {"expression", deep}}})},
                      {"partitions", sources}});
  }
  const ImporterRun run =
      tav::test::importText(json{{"name", "Deep"}, {"model", {{"tables", tables}}}}.dump());
  EXPECT_EQ(run.exitCode, 0) << run.errors;
}

TEST(TabularDefinition, TenThousandTablesEachWithAMeasureOverTheLast) {
  json tables = json::array();
  for (int i = 0; i < 10'000; ++i) {
    const std::string number = std::to_string(i);
    const std::string before = i == 0 ? "0" : "[M" + std::to_string(i - 1) + "]";
    std::string expression = "SUM(T";
    expression.append(number).append("[c]) + ").append(before);
    json source = {{"query", "SELECT * FROM dbo.T" + number}, {"dataSource", "D"}};
    tables.push_back({{"name", "T" + number},
                      {"columns", json::array({{{"name", "c"}, {"sourceColumn", "c"}}})},
                      {"measures", json::array({{{"name", "M" + number}, {"expression", expression}}})},
                      {"partitions", json::array({{{"source", source}}})}});
  }
  json model = {{"dataSources", json::array({{{"name", "D"}}})}, {"tables", tables}};
  const ImporterRun run = tav::test::importText(json{{"name", "Many"}, {"model", model}}.dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_EQ(run.messages, "");
  const tav::test::Sources sources = tav::test::sourcesOf(*run.model);
  EXPECT_EQ(
      sources.at("/Cubes/Model/Calculated Measures/T9999/M9999"),
      (std::vector<std::string>{"/Dimensions/T9999/c", "/Cubes/Model/Calculated Measures/T9998/M9998"}));
}

TEST(TabularDefinition, AMissingFileIsOneLine) {
  const ImporterRun run = tav::test::runImporter("/nowhere/FILE.bim");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.errors, "[TAVTAB_F0001] FILE.bim: no such file\n");
}

TEST(TabularDefinition, AnyFileNameSurvives) {
  const tav::test::TemporaryFolder folder;
  const std::string path = folder.write("a b'\"$(x)\n\\t\tü.bim", R"({"name":"Odd","model":{}})");
  const ImporterRun run = tav::test::runImporter(path);
  EXPECT_EQ(run.exitCode, 0) << run.errors;
}

}  // namespace
