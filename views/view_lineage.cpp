// The lineage that the columns and named queries of a view make.

#include "framework/expression/query_resolver.h"
#include "framework/model/model.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"
#include "views/dsv_reader.h"

namespace {

TAVClassifierMap& mapOf(TAVClassifier& classifier) {
  if (TAVClassifierMap* map = classifier.getDestinationOfClassifierMap()) return *map;
  TAVClassifierMap& made = classifier.addClassifierMap(tav::make<TAVClassifierMap>());
  made.addDestinationClassifier(classifier);
  return made;
}

/// A statement with the tables of the view that it reads.
class QueryReader {
 public:
  QueryReader(const tav::Query& query, std::string_view dataSourceId, tav::ViewIndex& index,
              TAVDsvReader::DSVExpressionAnalyzer& analyzer)
      : query_(query), index_(index), analyzer_(analyzer), resolver_(query) {
    for (const tav::QueryObject& object : resolver_.objects())
      tables_.push_back(index.findTable(object.parts, dataSourceId));
    resolver_.setHasColumn([this](std::uint32_t object, const std::string& column) {
      return findColumn(object, column) != nullptr;
    });
  }

  [[nodiscard]] bool isComplete() const { return resolver_.isComplete(); }

  [[nodiscard]] TAVString objectNames() const {
    TAVString lines;
    for (const tav::QueryObject& object : resolver_.objects())
      tav::addLine(lines, tav::joinDottedName(object.parts));
    return lines;
  }

  void addColumn(TAVColumn& column) {
    const std::vector<tav::QuerySource> sources = resolver_.sourcesOf(column.physicalName);
    column.querySources = sourceNames(sources);
    const tav::QueryColumn* written = resolver_.findColumn(column.physicalName);
    if (written && !written->copy) column.expression = query_.textOf(*written);
    addMap(column, column.expression, sources);
  }

  void addCondition(TAVCondition& condition) {
    for (const tav::QueryPart& part : query_.conditions)
      tav::addLine(condition.expression, query_.textOf(part));
    const std::vector<tav::QuerySource> sources = resolver_.conditionSources();
    condition.querySources = sourceNames(sources);
    addMap(condition, condition.expression, sources);
  }

 private:
  TAVFeature* findColumn(std::uint32_t object, const std::string& name) {
    if (object == tav::QuerySource::kUnknown || !tables_[object]) return nullptr;
    for (TAVFeature* feature : index_.findFeatures(*tables_[object], name))
      if (analyzer_.isStarCandidate(feature, true)) return feature;
    return nullptr;
  }

  TAVString sourceNames(const std::vector<tav::QuerySource>& sources) const {
    TAVString lines;
    for (const tav::QuerySource& source : sources) {
      std::vector<std::string> parts;
      if (source.object != tav::QuerySource::kUnknown) parts = resolver_.objects()[source.object].parts;
      parts.push_back(source.column);
      tav::addLine(lines, tav::joinDottedName(parts));
    }
    return lines;
  }

  /// Links those of the sources that the view shows.
  void addMap(TAVFeature& destination, std::string_view operation,
              const std::vector<tav::QuerySource>& sources) {
    TAVFeatureMap* made = nullptr;
    for (const tav::QuerySource& source : sources) {
      TAVFeature* column = findColumn(source.object, source.column);
      if (!column) continue;
      TAVClassifierMap& map = mapOf(*destination.classifier);
      if (!made) {
        made = &map.addFeatureMap(tav::make<TAVFeatureMap>());
        made->operation = operation;
        made->addDestinationFeature(destination);
      }
      if (!made->sourceFeatures.contains(*column)) made->addSourceFeature(*column);
      if (!map.sourceClassifiers.contains(*column->classifier)) map.addSourceClassifier(*column->classifier);
    }
  }

  const tav::Query& query_;
  tav::ViewIndex& index_;
  TAVDsvReader::DSVExpressionAnalyzer& analyzer_;
  tav::QueryResolver resolver_;
  std::vector<TAVTable*> tables_;  // those of the resolver's objects, null when the view has none
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
  TAVClassifierMap& owner = mapOf(*column.classifier);
  TAVFeatureMap& map = owner.addFeatureMap(tav::make<TAVFeatureMap>());
  map.operation = column.expression;
  map.addDestinationFeature(column);
  analyzer_.setCurrentFeatureMap(&map);
  analyzer_.parse(&map);
  analyzer_.clearCurrentFeatureMap();
  // The column keeps its expression; a map without sources would say nothing more.
  if (map.sourceFeatures.getCount() == 0) tav::destroy(map);
  if (owner.featureMaps.getCount() == 0) tav::destroy(owner);
}

void TAVDsvReader::addQueryLineage(TAVTable& table) {
  const tav::Query query = tav::parseQuery(table.query);
  if (query.fault)
    analyzer_.setParsingError(table.getPath(true), tav::placeInText(table.query, query.fault.offset),
                              query.fault.expected);
  QueryReader reader(query, table.dataSourceId, *index_, analyzer_);
  table.querySources = reader.objectNames();
  for (TAVFeature& feature : table.features)
    if (auto* column = tav::as<TAVColumn>(&feature); column && column->expression.empty())
      reader.addColumn(*column);
  if (!query.conditions.empty()) reader.addCondition(*analyzer_.getDstCondition(&table));
  if (!reader.isComplete())
    analyzer_.setParsingError(table.getPath(true), tav::placeInText(table.query, 0),
                              "columns that are computed from fewer others");
}
