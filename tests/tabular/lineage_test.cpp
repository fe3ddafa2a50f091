// What the names in DAX expressions, SQL queries and M queries lead to. All cases of a corpus are one model,
// so that Java starts once: a case is a measure or column, or a table with the partition that the case shows.

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/timing.h"
#include "tests/tabular/importer_run.h"

namespace {

using nlohmann::json;
using tav::test::CorpusCase;
using tav::test::Sources;

/// The text behind `prefix`, or all of it.
std::string without(std::string text, std::string_view prefix) {
  if (text.rfind(prefix, 0) == 0) text.erase(0, prefix.size());
  return text;
}

json column(const std::string& name) {
  return {{"name", name}, {"dataType", "int64"}, {"sourceColumn", name}};
}

/// The tables that the expressions of the corpus are about.
json daxTables() {
  json sales = json::array({column("Amount"), column("Cost"), column("Quantity"), column("Odd ]Name")});
  json date = json::array({column("Day"), column("Month"), column("Amount")});
  json quoted = json::array({column("Code")});
  json scripts = json::array({column("Größe"), column("Выручка"), column("İl"), column("ılık")});
  json measures = json::array({{{"name", "Total"}, {"expression", "SUM(Sales[Amount])"}},
                               {{"name", "Cost"}, {"expression", "SUM(Sales[Cost])"}}});
  return json::array({{{"name", "Sales"}, {"columns", sales}, {"measures", measures}},
                      {{"name", "Calendar Day"}, {"columns", date}},
                      {{"name", "Bob's"}, {"columns", quoted}},
                      {{"name", "Λόγος"}, {"columns", scripts}}});
}

json daxModel(const std::vector<CorpusCase>& cases, bool columns) {
  json tables = daxTables();
  for (const CorpusCase& one : cases) {
    json computed = {{"name", one.name}, {"expression", one.input}};
    if (columns) computed["type"] = "calculated";
    tables[0][columns ? "columns" : "measures"].push_back(computed);
  }
  json functions = json::array(
      {{{"name", "Local.Margin"}, {"expression", "( t : TABLEREF ) => SUM(Sales[Cost]) + [Total]"}}});
  return {{"name", "DAX"},
          {"compatibilityLevel", 1702},
          {"model", {{"tables", tables}, {"functions", functions}}}};
}

/// What a case comes to: a line for each source, then the warnings about it.
std::string showDax(const tav::test::ImporterRun& run, const Sources& sources, const std::string& path) {
  std::string text;
  if (const auto found = sources.find(path); found != sources.end())
    for (const std::string& source : found->second)
      text += without(without(source, "/Dimensions/"), "/Cubes/Model/Calculated Measures/") + "\n";
  for (std::size_t at = 0, end = 0; at < run.messages.size(); at = end + 1) {
    end = run.messages.find('\n', at);
    const std::string line = run.messages.substr(at, end - at);
    if (line.find("'" + path + "'") != std::string::npos)
      text += line.substr(0, line.find(" used in")) + "\n";
  }
  if (!text.empty()) text.pop_back();
  return text;
}

void checkDax(const std::string& file, bool columns) {
  const std::vector<CorpusCase> cases = tav::test::loadCorpus(file);
  const tav::test::ImporterRun run = tav::test::importText(daxModel(cases, columns).dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  const Sources sources = tav::test::sourcesOf(*run.model);
  const std::string folder = columns ? "/Dimensions/Sales/" : "/Cubes/Model/Calculated Measures/Sales/";
  std::map<std::string, std::string> results;
  for (const CorpusCase& one : cases) results[one.input] = showDax(run, sources, folder + one.name);
  tav::test::checkCorpus(file, [&](const std::string& input) { return results[input]; });
}

/// The shared expressions of the corpus of M.
const std::map<std::string, std::string> kSharedQueries = {
    {"Server", R"("db.example" meta [IsParameterQuery=true])"},
    {"Suffix", R"("" meta [IsParameterQuery=true, Type="Text"])"},
    {"Flag", R"("on" meta [IsParameterQuery=true])"},
    {"Base", R"(DW{[Schema="dbo",Item="Base"]}[Data])"},
    {"T", R"(DW{[Schema="dbo",Item="T"]}[Data])"},
    {"U", R"(let Source = DW, U = Source{[Schema="dbo",Item="U"]}[Data] in U)"},
    {"Odd", "let S = T in\n  Foo.Bar(S)"},
    {"Renamed", R"((t as table, name as text) as table => Table.RenameColumns(t, {{"Old", name}}))"},
    {"Added", "let F = (a, b) => a + b in F"}};

/// A case's first line lists the columns that its table reads, separated by blanks.
json queryModel(const std::vector<CorpusCase>& cases, const std::string& type) {
  json tables = json::array();
  for (const CorpusCase& one : cases) {
    const std::size_t line = one.input.find('\n');
    json columns = json::array();
    std::string names = one.input.substr(0, line) + " ";
    for (std::size_t at = 0, end = 0; (end = names.find(' ', at)) != std::string::npos; at = end + 1)
      columns.push_back(column(names.substr(at, end - at)));
    json source = {{"type", type}, {"dataSource", "DW"}};
    source[type == "m" ? "expression" : "query"] = one.input.substr(line + 1);
    tables.push_back({{"name", one.name},
                      {"columns", columns},
                      {"partitions", json::array({{{"name", "p"}, {"source", source}}})}});
  }
  json shared = json::array();
  for (const auto& [name, expression] : kSharedQueries)
    shared.push_back({{"name", name}, {"expression", expression}});
  json dataSources = json::array({{{"name", "DW"}, {"connectionString", "Data Source=dw.example"}}});
  return {{"name", "Queries"},
          {"model", {{"dataSources", dataSources}, {"tables", tables}, {"expressions", shared}}}};
}

/// What a warning says about the query of a table, on a line of its own.
std::string showWarnings(const std::string& messages, const CorpusCase& one) {
  std::string text;
  std::istringstream lines(messages);
  const std::string about = "'/Dimensions/" + one.name + "' is not understood in full: ";
  for (std::string line; std::getline(lines, line);)
    if (const std::size_t at = line.find(about); at != std::string::npos)
      text += "warning: " + line.substr(at + about.size()) + "\n";
  return text;
}

/// The columns whose conditions limit what the query of a table reads, on a line of their own.
std::string showCondition(const Sources& sources, const CorpusCase& one) {
  const auto found = sources.find("/Data Source Views/DW/" + one.name + "/SQL CONDITION");
  if (found == sources.end()) return "";
  std::string list;
  for (const std::string& path : found->second)
    list += (list.empty() ? "" : ", ") + without(path, "/Data Source Views/");
  return "limited by " + (list.empty() ? "no column" : list) + "\n";
}

/// A line for each column: where it is read, and behind a query's own column where that comes from.
std::string showQuery(const tav::test::ImporterRun& run, const Sources& sources, const CorpusCase& one,
                      bool conditions) {
  std::string text;
  const auto names = [](const std::vector<std::string>& paths) {
    std::string list;
    for (const std::string& path : paths)
      list += (list.empty() ? "" : ", ") + without(path, "/Data Source Views/");
    return list;
  };
  const std::string line = one.input.substr(0, one.input.find('\n')) + " ";
  for (std::size_t at = 0, end = 0; (end = line.find(' ', at)) != std::string::npos; at = end + 1) {
    const std::string name = line.substr(at, end - at);
    const std::vector<std::string>& direct = sources.at("/Dimensions/" + one.name + "/" + name);
    text += name + " <- " + names(direct);
    for (const std::string& path : direct)
      if (const auto& further = sources.at(path); !further.empty()) text += " <- " + names(further);
    text += "\n";
  }
  if (conditions) text += showCondition(sources, one);
  text += showWarnings(run.messages, one);
  text.pop_back();
  return text;
}

void checkQueries(const std::string& file, const std::string& type) {
  const std::vector<CorpusCase> cases = tav::test::loadCorpus(file);
  const tav::test::ImporterRun run = tav::test::importText(queryModel(cases, type).dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  const Sources sources = tav::test::sourcesOf(*run.model);
  std::map<std::string, std::string> results;
  for (const CorpusCase& one : cases) results[one.input] = showQuery(run, sources, one, type == "m");
  tav::test::checkCorpus(file, [&](const std::string& input) { return results[input]; });
}

TEST(TabularLineage, MeasuresLeadToWhatTheyName) {
  checkDax("tabular/measures.txt", false);
}
TEST(TabularLineage, CalculatedColumnsMeanTheirOwnTableFirst) {
  checkDax("tabular/columns.txt", true);
}
TEST(TabularLineage, SqlLeadsToTables) {
  checkQueries("tabular/sql.txt", "query");
}
TEST(TabularLineage, MLeadsToTables) {
  checkQueries("tabular/m.txt", "m");
}

/// `text` with the number in the place of each §.
std::string numbered(std::string text, int number) {
  constexpr std::string_view kMark = "\xC2\xA7";
  for (std::size_t at = text.find(kMark); at != std::string::npos; at = text.find(kMark, at))
    text.replace(at, kMark.size(), std::to_string(number));
  return text;
}

json tableOfQuery(const std::string& name, const std::string& text) {
  const json source = {{"type", "m"}, {"expression", text}};
  return {{"name", name},
          {"columns", json::array({column("A")})},
          {"partitions", json::array({{{"name", "p"}, {"source", source}}})}};
}

/// Queries of which each combines the one before it with itself: a walk along all ways would double with
/// each.
json doublingModel(int levels) {
  json shared = json::array({{{"name", "Q0"}, {"expression", R"(DW{[Schema="dbo",Item="T"]}[Data])"}}});
  std::string steps = R"(let S0 = DW{[Schema="dbo",Item="T"]}[Data])";
  for (int i = 1; i <= levels; ++i) {
    shared.push_back({{"name", numbered("Q\xC2\xA7", i)},
                      {"expression", numbered("Table.Combine({Q\xC2\xA7, Q\xC2\xA7})", i - 1)}});
    steps.append(numbered(", S\xC2\xA7 = ", i))
        .append(numbered("Table.Combine({S\xC2\xA7, S\xC2\xA7})", i - 1));
  }
  const json tables = json::array({tableOfQuery("shared", numbered("Q\xC2\xA7", levels)),
                                   tableOfQuery("steps", numbered(steps + " in S\xC2\xA7", levels))});
  const json dataSources = json::array({{{"name", "DW"}, {"connectionString", "Data Source=dw.example"}}});
  return {{"name", "Doubling"},
          {"model", {{"dataSources", dataSources}, {"tables", tables}, {"expressions", shared}}}};
}

TEST(TabularLineage, ColumnsThatAreNotKnownStillLeadToTheTables) {
  const std::string text =
      R"(let T = DW{[Schema="dbo",Item="T"]}[Data], U = DW{[Schema="dbo",Item="U"]}[Data])"
      R"( in Table.Transpose(Table.Combine({T, Foo.Bar(U)})))";
  const json dataSources = json::array({{{"name", "DW"}, {"connectionString", "Data Source=dw.example"}}});
  const json model = {
      {"name", "Tables"},
      {"model", {{"dataSources", dataSources}, {"tables", json::array({tableOfQuery("turned", text)})}}}};
  const tav::test::ImporterRun run = tav::test::importText(model.dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_EQ(tav::test::sourcesOf(*run.model).at("/Data Source Views/DW/turned/A"),
            std::vector<std::string>());
  const std::vector<std::string> tables = {"/Data Source Views/DW/T", "/Data Source Views/DW/U"};
  EXPECT_EQ(tav::test::classifierSourcesOf(*run.model).at("/Data Source Views/DW/turned"), tables);
  // One warning for the query, which tells its first step that is not known.
  const std::size_t first = run.messages.find("TAVTAB_W0002");
  EXPECT_NE(run.messages.find("'Foo.Bar' is not known", first), std::string::npos) << run.messages;
  EXPECT_EQ(run.messages.find("TAVTAB_W0002", first + 1), std::string::npos) << run.messages;
}

/// Shared expressions of which each names the one before it, the last one read by a table.
json chainModel(int length) {
  json shared = json::array({{{"name", "Q0"}, {"expression", R"(DW{[Schema="dbo",Item="T"]}[Data])"}}});
  for (int i = 1; i <= length; ++i) {
    const std::string step = "let S = Q\xC2\xA7 in Table.RenameColumns(S, {{\"c\xC2\xA7\", \"c";
    shared.push_back({{"name", numbered("Q\xC2\xA7", i)},
                      {"expression", numbered(step, i - 1) + numbered("\xC2\xA7\"}})", i)}});
  }
  const std::string last = numbered("Table.RenameColumns(Q\xC2\xA7, {{\"c\xC2\xA7\", \"A\"}})", length);
  const json dataSources = json::array({{{"name", "DW"}, {"connectionString", "Data Source=dw.example"}}});
  return {{"name", "Chain"},
          {"model",
           {{"dataSources", dataSources},
            {"tables", json::array({tableOfQuery("last", last)})},
            {"expressions", shared}}}};
}

TEST(TabularLineage, AChainOfSharedExpressionsIsFollowedToItsEnd) {
  const tav::test::ImporterRun run = tav::test::importText(chainModel(5000).dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_EQ(run.messages.find("TAVTAB_W0002"), std::string::npos) << run.messages;
  const Sources sources = tav::test::sourcesOf(*run.model);
  EXPECT_EQ(sources.at("/Dimensions/last/A"), std::vector<std::string>{"/Data Source Views/DW/T/c0"});
}

double secondsFor(int levels) {
  const auto start = std::chrono::steady_clock::now();
  const tav::test::ImporterRun run = tav::test::importText(doublingModel(levels).dump());
  EXPECT_EQ(run.exitCode, 0) << run.errors;
  for (const auto& [path, sources] : tav::test::sourcesOf(*run.model)) {
    if (path.ends_with("/A") && path.starts_with("/Dimensions/")) {
      EXPECT_EQ(sources.size(), 1U) << path;
    }
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(TabularLineage, CombinedQueriesCostWhatTheirTextIsLong) {
  EXPECT_TRUE(tav::test::growsAtMost([] { return secondsFor(20); }, [] { return secondsFor(40); }, 2));
}

}  // namespace
