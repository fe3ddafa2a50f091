// What expressions of DAX lead to: features, tables, and the columns that they make. All cases are one model,
// so that Java starts once.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "framework/model/roles.h"
#include "framework/model/tree_walk.h"
#include "tests/tabular/importer_run.h"

namespace {

using nlohmann::json;
using tav::test::CorpusCase;

constexpr std::string_view kMeasures = "/Cubes/Model/Calculated Measures/";
constexpr std::string_view kTables = "/Dimensions/";

json columnsNamed(const std::vector<std::string>& names) {
  json columns = json::array();
  for (const std::string& name : names)
    columns.push_back({{"name", name}, {"dataType", "int64"}, {"sourceColumn", name}});
  return columns;
}

json daxTables() {
  const auto measure = [](const char* name, const char* text) {
    return json{{"name", name}, {"expression", text}};
  };
  const json measures =
      json::array({measure("Total", "SUM(Sales[Amount])"), measure("Units", "SUM(Sales[Qty])"),
                   measure("Price", "MAX(Product[Price])")});
  return json::array({{{"name", "Sales"},
                       {"columns", columnsNamed({"Amount", "Cost", "Qty", "Day", "ProductId"})},
                       {"measures", measures}},
                      {{"name", "Product"},
                       {"columns", columnsNamed({"ProductId", "Name", "Parent", "Price", "'Odd\" ]Col"})}},
                      {{"name", "Date"},
                       {"columns", columnsNamed({"Day", "Month", "Year"})},
                       {"calendars", json::array({{{"name", "Fiscal"}}})}},
                      {{"name", "Month"}, {"columns", columnsNamed({"Id", "Label"})}},
                      {{"name", "Time"}, {"columns", columnsNamed({"Item"})}}});
}

json daxFunctions() {
  const std::vector<std::pair<const char*, const char*>> functions = {
      {"Local.Ratio", "(a : NUMERIC, b : NUMERIC) => DIVIDE(a, b)"},
      {"Local.SumOver", "(t : TABLE, x : NUMERIC EXPR) => SUMX(t, x)"},
      {"Local.Named", "(c : ANYREF) => DISTINCTCOUNT(c)"},
      {"Local.Twice", "(x : NUMERIC EXPR) => x + x"},
      {"Local.Const", "() => 1"},
      {"Local.Margin", "() => SUM(Sales[Amount]) - SUM(Sales[Cost])"},
      {"Local.Default", "(x = [Units]) => x"},
      {"Local.Shifted", "(unit) => CALCULATE([Total], DATEADD('Date'[Day], 1, unit))"},
      {"Local.Loop", "(x) => Local.Loop(x)"},
      {"Local.WithTotal", "(t : TABLE) => ADDCOLUMNS(t, \"v\", [Total])"}};
  json made = json::array();
  for (const auto& [name, text] : functions) made.push_back({{"name", name}, {"expression", text}});
  return made;
}

/// A case's kind, and of a table the names of its columns.
std::vector<std::string> headOf(const CorpusCase& one) {
  std::istringstream line(one.input.substr(0, one.input.find('\n')));
  std::vector<std::string> words;
  std::string kind;
  line >> kind;
  words.push_back(kind);
  for (std::string name; std::getline(line >> std::ws, name, ',');) words.push_back(name);
  return words;
}

json tableOf(const CorpusCase& one, const std::string& expression) {
  const std::vector<std::string> head = headOf(one);
  json columns = json::array();
  for (auto name = head.begin() + 1; name != head.end(); ++name) {
    const std::string source = name->find('[') == std::string::npos ? "[" + *name + "]" : *name;
    columns.push_back({{"type", "calculatedTableColumn"}, {"name", *name}, {"sourceColumn", source}});
  }
  const json source = {{"type", "calculated"}, {"expression", expression}};
  return {{"name", one.name},
          {"columns", columns},
          {"partitions", json::array({{{"name", "p"}, {"source", source}}})}};
}

json daxModel(const std::vector<CorpusCase>& cases) {
  json tables = daxTables();
  for (const CorpusCase& one : cases) {
    const std::string expression = one.input.substr(one.input.find('\n') + 1);
    const std::string kind = headOf(one).front();
    json computed = {{"name", one.name}, {"expression", expression}};
    if (kind == "column") computed["type"] = "calculated";
    if (kind == "table")
      tables.push_back(tableOf(one, expression));
    else
      tables[0][kind == "column" ? "columns" : "measures"].push_back(computed);
  }
  return {{"name", "DAX"},
          {"compatibilityLevel", 1702},
          {"model", {{"tables", tables}, {"functions", daxFunctions()}}}};
}

/// The tables that the features of a model name by themselves, a line each, by path.
std::map<std::string, std::string> tablesOf(const TAVModel& model) {
  std::map<std::string, std::string> found;
  tav::forEachObject(model, [&](const TAVObject& object) {
    const auto* feature = tav::as<TAVFeature>(&object);
    if (!feature) return;
    const auto counted = tav::linesOfProperty(*feature, tav::label::kCountedTables);
    for (const std::string_view name : tav::linesOfProperty(*feature, tav::label::kSourceTables)) {
      const bool isCounted = std::find(counted.begin(), counted.end(), name) != counted.end();
      found[feature->getPath(true).str()]
          .append(isCounted ? "counts " : "through ")
          .append(name)
          .append("\n");
    }
  });
  return found;
}

std::string shortened(const std::string& path) {
  for (const std::string_view folder : {kMeasures, kTables})
    if (path.rfind(folder, 0) == 0) return path.substr(folder.size());
  return path;
}

/// The warnings about what has the path.
std::string showWarnings(const std::string& messages, const std::string& path) {
  std::string text;
  std::istringstream lines(messages);
  const std::string open = "Expression of '" + path + "', ";
  const std::string missing = "Could not find source feature '";
  const std::string end = "' used in calculated expression '" + path + "'";
  for (std::string line; std::getline(lines, line);) {
    if (const std::size_t at = line.find(open); at != line.npos)
      text += "fault " + line.substr(at + open.size()) + "\n";
    const std::size_t at = line.find(missing);
    if (const std::size_t stop = line.find(end); at != line.npos && stop != line.npos)
      text += "not found " + line.substr(at + missing.size(), stop - at - missing.size()) + "\n";
  }
  return text;
}

class Shown {
 public:
  explicit Shown(const tav::test::ImporterRun& run)
      : run_(run), sources_(tav::test::sourcesOf(*run.model)), tables_(tablesOf(*run.model)) {}

  std::string show(const CorpusCase& one) {
    const std::vector<std::string> head = headOf(one);
    std::string text;
    if (head.front() == "table") {
      text = showTable(std::string(kTables) + one.name, head);
    } else {
      const std::string path =
          std::string(head.front() == "column" ? kTables : kMeasures) + "Sales/" + one.name;
      for (const std::string& source : sources_[path]) text += shortened(source) + "\n";
      text += tables_[path] + showWarnings(run_.messages, path);
    }
    if (!text.empty()) text.pop_back();
    return text;
  }

 private:
  std::string showTable(const std::string& path, const std::vector<std::string>& head) {
    std::string text;
    for (auto name = head.begin() + 1; name != head.end(); ++name) {
      text += *name + " <-";
      std::string separator = " ";
      for (const std::string& source : sources_[path + "/" + *name]) {
        text += separator + shortened(source);
        separator = ", ";
      }
      text += "\n" + showWarnings(run_.messages, path + "/" + *name);
    }
    return text + showWarnings(run_.messages, path);
  }

  const tav::test::ImporterRun& run_;
  tav::test::Sources sources_;
  std::map<std::string, std::string> tables_;
};

TEST(TabularDax, LeadsToWhatItMeans) {
  const std::vector<CorpusCase> cases = tav::test::loadCorpus("tabular/dax.txt");
  const tav::test::ImporterRun run = tav::test::importText(daxModel(cases).dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  Shown shown(run);
  std::map<std::string, std::string> results;
  for (const CorpusCase& one : cases) results[one.input] = shown.show(one);
  tav::test::checkCorpus("tabular/dax.txt", [&](const std::string& input) { return results[input]; });
}

/// Each function evaluates its argument twice, through the one before it.
TEST(TabularDax, FunctionsThatMultiplyEndWithOneWarning) {
  json functions = json::array({{{"name", "F0"}, {"expression", "(x : EXPR) => x + x"}}});
  for (int i = 1; i < 40; ++i) {
    const std::string call = "F" + std::to_string(i - 1) + "(x)";
    std::string body = "(x : EXPR) => ";
    body.append(call).append(" + ").append(call);
    functions.push_back({{"name", "F" + std::to_string(i)}, {"expression", body}});
  }
  const json measures = json::array({{{"name", "M"}, {"expression", "F39(1)"}}});
  const json tables = json::array({{{"name", "T"}, {"measures", measures}}});
  const json model = {{"tables", tables}, {"functions", functions}};
  const tav::test::ImporterRun run = tav::test::importText(json{{"name", "F"}, {"model", model}}.dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1) << run.messages;
  EXPECT_NE(run.messages.find("too many calls of functions"), run.messages.npos) << run.messages;
}

}  // namespace
