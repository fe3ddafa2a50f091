#include <gtest/gtest.h>

#include "exports/formats.h"
#include "framework/std/exception.h"
#include "tests/support/corpus.h"
#include "tests/tables/small_model.h"

namespace {

/// How many cells each row of a table has, as RFC 4180 reads it.
std::vector<std::size_t> cellCounts(std::string_view table) {
  std::vector<std::size_t> counts;
  std::size_t cells = 1;
  bool quoted = false;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table[i] == '"') quoted = !quoted;
    if (quoted) continue;
    if (table[i] == ',') ++cells;
    if (table.substr(i, 2) != "\r\n") continue;
    counts.push_back(cells);
    cells = 1;
    ++i;
  }
  EXPECT_FALSE(quoted);
  EXPECT_TRUE(table.ends_with("\r\n"));
  return counts;
}

std::string shownTable(const std::filesystem::path& path) {
  const std::string table = tav::test::readFile(path);
  const std::vector<std::size_t> counts = cellCounts(table);
  for (const std::size_t count : counts) EXPECT_EQ(count, counts.front());
  std::string shown;
  for (const char c : table) shown.append(c == '\r' ? "\\r" : std::string(1, c));
  return shown;
}

void exportCsv(const tav::SavedModel& model, const std::string& input, const std::string& output) {
  tav::ExportOptions options;
  options.input = input;
  tav::findExportFormat("csv")->writeFiles({*model.model, model.details.get()}, options, output);
}

TEST(Csv, Corpus) {
  tav::test::checkCorpus("tables/csv.txt", [](const std::string& content) {
    const tav::test::TemporaryFolder folder;
    const auto model = tav::test::smallModel("Sales, 2020", content);
    exportCsv(model, "in/sales.xmla", (folder.path() / "out.csv").string());
    std::string shown;
    for (const char* table : {"nodes", "edges", "settings", "open_names"})
      shown += shownTable(folder.path() / std::string("out.").append(table).append(".csv"));
    shown.pop_back();
    return shown;
  });
}

TEST(Csv, AFailureLeavesBothFilesAsTheyWere) {
  const tav::test::TemporaryFolder folder;
  const std::string input = folder.write("out.nodes.csv", "a model");
  const auto model = tav::test::smallModel("M", "");
  EXPECT_THROW(exportCsv(model, input, (folder.path() / "out").string()), TAVException);
  EXPECT_EQ(tav::test::readFile(input), "a model");
  std::filesystem::create_directory(folder.path() / "late.edges.csv");
  EXPECT_THROW(exportCsv(model, "m.xml", (folder.path() / "late").string()), TAVException);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

}  // namespace
