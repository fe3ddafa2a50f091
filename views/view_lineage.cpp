// The lineage that the columns and named queries of a view make.

#include <unordered_map>

#include "framework/model/lineage_writer.h"
#include "framework/model/model.h"
#include "views/dsv_reader.h"
#include "views/query_lineage.h"

namespace {

/// The tables and columns of the view that the query belongs to. What the view computes itself is no column
/// of the database, and no query can mean it.
class ViewTarget : public tav::QueryTarget {
 public:
  ViewTarget(std::string_view dataSourceId, tav::ViewIndex& index,
             TAVDsvReader::DSVExpressionAnalyzer& analyzer)
      : dataSourceId_(dataSourceId), index_(index), analyzer_(analyzer) {}

  bool hasColumn(const tav::QueryObject& table, const std::string& column) override {
    return find(table, column);
  }

  TAVFeature* findColumn(const tav::QueryObject& table, const std::string& column,
                         const TAVFeature& /*reader*/) override {
    return find(table, column);
  }

  TAVCondition& condition(TAVTable& table) override { return *analyzer_.getDstCondition(&table); }

 private:
  TAVFeature* find(const tav::QueryObject& object, const std::string& column) {
    const auto [table, isNew] = tables_.try_emplace(&object);
    if (isNew) table->second = index_.findTable(object.parts, dataSourceId_);
    if (!table->second) return nullptr;
    for (TAVFeature* feature : index_.findFeatures(*table->second, column))
      if (analyzer_.isStarCandidate(feature, true)) return feature;
    return nullptr;
  }

  std::string_view dataSourceId_;
  tav::ViewIndex& index_;
  TAVDsvReader::DSVExpressionAnalyzer& analyzer_;
  std::unordered_map<const tav::QueryObject*, TAVTable*> tables_;
};

/// What stands for the view's index while its lineage is made.
class IndexScope {
 public:
  IndexScope(tav::ViewIndex*& place, tav::ViewIndex& index) : place_(place) { place_ = &index; }
  IndexScope(const IndexScope&) = delete;
  IndexScope& operator=(const IndexScope&) = delete;
  ~IndexScope() { place_ = nullptr; }

 private:
  tav::ViewIndex*& place_;
};

}  // namespace

void TAVDsvReader::addLineage(TAVDesignPackage& view) {
  tav::ViewIndex index(view);
  const IndexScope scope(index_, index);
  for (TAVNamespaceElement& element : view.namespaceElements) {
    auto& table = *tav::as<TAVTable>(&element);
    for (TAVFeature& feature : table.features)
      if (auto* column = tav::as<TAVColumn>(&feature); column && !column->expression.empty())
        addExpressionLineage(*column);
    if (!table.query.empty()) addQueryLineage(table);
  }
}

void TAVDsvReader::addExpressionLineage(TAVColumn& column) {
  TAVClassifierMap& owner = tav::classifierMapOf(*column.classifier);
  TAVFeatureMap& map = tav::addFeatureMap(owner, column, column.expression);
  analyzer_.setCurrentFeatureMap(&map);
  analyzer_.parse(&map);
  analyzer_.clearCurrentFeatureMap();
  // The column keeps its expression; a map without sources would say nothing more.
  if (map.sourceFeatures.getCount() == 0) tav::destroy(map);
  if (owner.featureMaps.getCount() == 0) tav::destroy(owner);
}

void TAVDsvReader::addQueryLineage(TAVTable& table) {
  ViewTarget target(table.dataSourceId, *index_, analyzer_);
  const tav::Query query = tav::parseQuery(table.query);
  tav::QueryLineage lineage(query, target);
  lineage.write(table);
  lineage.report(table, analyzer_);
}
