#include <gtest/gtest.h>

#include <filesystem>

#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "views/dsv_reader.h"

namespace {

namespace fs = std::filesystem;

/// Every warning is a fault that the parsers find in real text.
class StrictLog : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override { ADD_FAILURE() << event.getText().view(); }
};

struct Counts {
  int queries = 0;
  int queryColumns = 0;
  int expressions = 0;
  int traced = 0;
};

void countTable(const TAVTable& table, Counts& counts) {
  const bool query = !table.query.empty();
  counts.queries += static_cast<int>(query);
  EXPECT_EQ(query, !table.querySources.empty()) << table.getPath(true).view();
  for (const TAVFeature& feature : table.features) {
    const auto* column = tav::as<TAVColumn>(&feature);
    if (!column) continue;
    const bool computed = !query && !column->expression.empty();
    counts.expressions += static_cast<int>(computed);
    counts.traced += static_cast<int>(computed && column->getDestinationOfFeatureMap() != nullptr);
    if (!query) continue;
    ++counts.queryColumns;
    // A column that a UNION fills with constants alone has no source.
    EXPECT_FALSE(column->querySources.empty() && column->getName() != "SalesChannel")
        << column->getPath(true).view();
  }
}

Counts readViews(const fs::path& file) {
  StrictLog log;
  TAVDOM dom(&log);
  const auto model = tav::make<TAVStoreModel>("model");
  Counts counts;
  std::vector<const TAVDOMElement*> left{dom.parseFile(TAVFile(TAVString(file.string())))};
  while (!left.empty()) {
    const TAVDOMElement& element = *left.back();
    left.pop_back();
    for (const TAVDOMElement& part : element.getElements()) left.push_back(&part);
    const auto view = TAVDsvReader(model.get(), &log, true, true).importDataSourceView(&element);
    if (!view) continue;
    for (const TAVNamespaceElement& table : view->namespaceElements)
      countTable(*tav::as<TAVTable>(&table), counts);
  }
  return counts;
}

TEST(Samples, QueriesAndExpressionsOfViewsAreFullyRead) {
  Counts all;
  for (const auto& entry : fs::directory_iterator(fs::path(SAMPLES) / "multidimensional")) {
    SCOPED_TRACE(entry.path());
    const Counts counts = readViews(entry.path());
    all.queries += counts.queries;
    all.queryColumns += counts.queryColumns;
    all.expressions += counts.expressions;
    all.traced += counts.traced;
  }
  EXPECT_EQ(all.queries, 17);
  EXPECT_EQ(all.expressions, 122);
  EXPECT_EQ(all.traced, 122);
  EXPECT_GT(all.queryColumns, 100);
}

}  // namespace
