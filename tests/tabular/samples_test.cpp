// Real tabular definitions, where there are any, and our own example.

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tabular/importer_run.h"

namespace {

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

}  // namespace
