// Real tabular definitions, where there are any, and our own example.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "tests/tabular/importer_run.h"

namespace {

using nlohmann::json;
using tav::test::ImporterRun;
using tav::test::Sources;

std::vector<std::filesystem::path> definitions() {
  std::vector<std::filesystem::path> found{EXAMPLES "/ferry-line.bim"};
  if (!std::filesystem::exists(SAMPLES)) return found;
  for (const auto& entry : std::filesystem::directory_iterator(SAMPLES)) found.push_back(entry.path());
  return found;
}

/// The features whose paths begin with `folder`, each with what it comes from.
std::string listSources(const Sources& sources, const std::string& folder) {
  std::string text;
  for (const auto& [path, from] : sources) {
    if (path.rfind(folder, 0) != 0) continue;
    text += path.substr(folder.size());
    for (const std::string& source : from) text += "\n  " + source;
    text += "\n";
  }
  return text;
}

/// A calculation group of a model that has no table of that name.
constexpr std::string_view kNoDateTable =
    "WARNING QVT_SSXMLA_W0013 Could not find source feature ''Date'[Date]' used in calculated expression "
    "'/Dimensions/Time Intelligence/MTD'\n";

TEST(TabularSamples, AllImportWithoutAnOpenReference) {
  for (const std::filesystem::path& path : definitions()) {
    const ImporterRun run = tav::test::runImporter(path);
    EXPECT_EQ(run.exitCode, 0) << path << run.errors;
    if (path.stem() == "ferry-line") continue;
    EXPECT_EQ(run.messages, path.stem() == "dax-calcgroup-1605" ? kNoDateTable : "") << path;
  }
}

TEST(TabularSamples, EveryReferenceOfOneModelIsTheOneReadByHand) {
  const std::filesystem::path path = SAMPLES "/aw-internet-sales-1400.bim";
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "no samples here";
  const ImporterRun run = tav::test::runImporter(path);
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  const Sources sources = tav::test::sourcesOf(*run.model);
  std::string text;
  for (const char* folder : {"/Cubes/Model/Calculated Measures/", "/Cubes/Model/KPIs/"})
    text += listSources(sources, folder);
  for (const char* column : {"FactInternetSales/Margin", "DimProduct/ProductCategoryName",
                             "DimProduct/ProductSubCategoryName", "DimCustomer/CustomerKey"})
    text += listSources(sources, std::string("/Dimensions/") + column);
  EXPECT_EQ(text, tav::test::readFile(tav::test::testFile("tabular/aw-internet-sales.txt")));
}

/// The model in a definition; null in one that is no strict JSON.
json modelOf(const std::filesystem::path& path) {
  std::string text = tav::test::readFile(path);
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  const json root = json::parse(text, nullptr, false);
  for (const char* command : {"/model", "/create/database/model", "/createOrReplace/database/model"})
    if (const json::json_pointer place(command); root.is_structured() && root.contains(place))
      return root.at(place);
  return nullptr;
}

/// Lines of a text that is an array joined.
std::string joined(const json& text) {
  if (text.is_string()) return text;
  std::string all;
  for (const json& line : text) all += line.get<std::string>() + "\n";
  return all;
}

/// The table of the database that a partition takes as it is; empty when it does anything else. Read by its
/// shape alone, without what the importer knows of SQL and M.
std::string wholeTableOf(const json& partition) {
  static const std::regex kSql(R"(\s*SELECT\s+\[?\w+\]?\.\[?\w+\]?\.\*\s+FROM\s+\[?\w+\]?\.\[?(\w+)\]?\s*)",
                               std::regex::icase);
  static const std::regex kM(
      R"re(\s*let\s+Source = [^\n]*,\s+(\w+) = Source\{\[Schema="\w+",Item="(\w+)"\]\}\[Data\]\s+in\s+(\w+)\s*)re");
  const json source = partition.value("source", json::object());
  std::smatch match;
  const std::string query = source.contains("query") ? joined(source["query"]) : "";
  if (std::regex_match(query, match, kSql)) return match[1];
  const std::string expression = source.contains("expression") ? joined(source["expression"]) : "";
  return std::regex_match(expression, match, kM) && match[1] == match[3] ? match[2].str() : "";
}

/// The columns that a feature comes from in the end, by their paths. Of one that ends as one of `expected`
/// does only that end is given: names may hold what parts paths.
std::set<std::string> endsOf(const Sources& sources, const std::string& path,
                             const std::set<std::string>& expected) {
  std::set<std::string> ends;
  std::vector<std::string> waiting{path};
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    const std::string at = waiting[i];
    if (const auto found = sources.find(at); found != sources.end() && !found->second.empty()) {
      waiting.insert(waiting.end(), found->second.begin(), found->second.end());
      continue;
    }
    const auto end = std::find_if(expected.begin(), expected.end(),
                                  [&](const std::string& one) { return at.ends_with("/" + one); });
    ends.insert(end == expected.end() ? at : *end);
  }
  return ends;
}

/// The columns of a table whose partitions take whole tables, compared; how many those are.
std::size_t compareTable(const json& table, const Sources& sources, const std::string& path) {
  std::set<std::string> tables;
  for (const json& partition : table.value("partitions", json::array()))
    tables.insert(wholeTableOf(partition));
  if (tables.empty() || tables.contains("")) return 0;
  std::size_t compared = 0;
  for (const json& column : table.value("columns", json::array())) {
    if (!column.contains("sourceColumn") || column.value("type", "data") != "data") continue;
    std::set<std::string> expected;
    for (const std::string& name : tables)
      expected.insert(name + "/" + column["sourceColumn"].get<std::string>());
    const std::string feature =
        "/Dimensions/" + table["name"].get<std::string>() + "/" + column["name"].get<std::string>();
    EXPECT_EQ(endsOf(sources, feature, expected), expected) << path << feature;
    ++compared;
  }
  return compared;
}

TEST(TabularSamples, ColumnsOfWholeTablesAreThoseOfTheDatabase) {
  std::size_t compared = 0;
  for (const std::filesystem::path& path : definitions()) {
    const json model = modelOf(path);
    if (!model.is_object() || path.stem() == "ferry-line") continue;
    const ImporterRun run = tav::test::runImporter(path);
    ASSERT_EQ(run.exitCode, 0) << path << run.errors;
    const Sources sources = tav::test::sourcesOf(*run.model);
    for (const json& table : model.value("tables", json::array()))
      compared += compareTable(table, sources, path);
  }
  if (!std::filesystem::exists(SAMPLES)) GTEST_SKIP() << "no samples here";
  EXPECT_GT(compared, 300U);
  RecordProperty("compared", static_cast<int>(compared));
}

}  // namespace
