#include "views/database_queries.h"

#include <unordered_map>
#include <unordered_set>

#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"
#include "views/dsv_reader.h"
#include "views/query_lineage.h"

namespace tav {
namespace {

constexpr std::size_t kLongestOwnName =
    2;  // schema and table; a longer name means another database or server

std::string tableKey(std::string_view schema, std::string_view name) {
  return foldedName(schema) + '\0' + foldedName(name);
}

TAVStoreConnection* connectionOf(const TAVTable& table) {
  return table.storeConnections.first();
}

/// What a collection holds now: the links in it are about to change.
template <class Collection> auto listOf(const Collection& collection) {
  std::vector<typename Collection::Target*> objects;
  for (auto& object : collection) objects.push_back(&object);
  return objects;
}

/// The table of the model that reads a query; null when none does.
const TAVClassifier* readerOf(const TAVTable& query) {
  for (const TAVFeature& column : query.features)
    for (const TAVFeatureMap& map : column.sourceOf)
      if (const TAVFeature* fed = map.destinationFeature.get()) return fed->classifier.get();
  return nullptr;
}

/// The tables of one connection, which stand in a package of their own. They are taken out and put back in
/// the order in which the tables of the model ask for them, so that a table that only a query names stands
/// where it is first read, with the names that this order gives.
class ConnectionTables : public QueryTarget {
 public:
  ConnectionTables(TAVDesignPackage& package, std::vector<TAVTable*> tables, TAVLog* log, Details* details)
      : package_(package), tables_(std::move(tables)), analyzer_(nullptr, log), details_(details) {}

  void resolve() {
    takeOut();
    const TAVClassifier* reader = nullptr;
    for (TAVTable* table : tables_) {
      if (table->nativeType != label::kUnresolvedQuery) {
        place(*table);
        continue;
      }
      // What a table of the model reads directly stands before what its queries name.
      if (const TAVClassifier* next = readerOf(*table); next != reader) {
        writeWaiting();
        reader = next;
      }
      resolveQuery(*table);
    }
    writeWaiting();
    replacePlain();
  }

  /// The model knows no columns of the database but those that it reads.
  bool hasColumn(const QueryObject& /*table*/, const std::string& /*column*/) override { return false; }

  /// A column that stands for the reader's only source has the reader's type.
  TAVFeature* findColumn(const QueryObject& table, const std::string& column,
                         const TAVFeature& reader) override {
    if (!isOwn(table)) return nullptr;
    const bool same = is<TAVColumn>(reader) && querySourcesOf(reader).size() == 1;
    return &columnOf(tableOf(table), column, same ? reader.type.get() : nullptr);
  }

  TAVCondition& condition(TAVTable& table) override { return *analyzer_.getDstCondition(&table); }

 private:
  using Columns = std::unordered_map<std::string, TAVFeature*>;

  void takeOut() {
    for (TAVTable* table : tables_) {
      connections_.emplace(table, connectionOf(*table));
      if (TAVStoreConnection* connection = connectionOf(*table))
        unlink<&TAVStoreConnection::connectionClassifiers>(*connection, *table);
      if (table->tableType == label::kTable)
        byName_.try_emplace(tableKey(table->schemaName, table->physicalName), table);
      waiting_.emplace(table, take(*table));
    }
  }

  /// Puts a table back, under the name that it has in the database or that its importer gave it.
  void place(TAVTable& table) {
    const auto found = waiting_.find(&table);
    if (found == waiting_.end()) return;
    table.setName(table.physicalName);
    package_.addNamespaceElementUniqueName(std::move(found->second), '/');
    waiting_.erase(found);
    if (TAVStoreConnection* connection = connections_.at(&table))
      link<&TAVStoreConnection::connectionClassifiers>(*connection, table);
  }

  /// Whether a name is of the connection's own database.
  static bool isOwn(const QueryObject& table) { return table.parts.size() <= kLongestOwnName; }

  TAVTable& tableOf(const QueryObject& object) {
    const std::string& name = object.parts.back();
    const std::string schema = object.parts.size() == kLongestOwnName ? object.parts.front() : std::string();
    TAVTable*& table = byName_[tableKey(schema, name)];
    if (!table) {
      auto made = make<TAVTable>(name);
      made->setPhysicalName(name);
      made->schemaName = schema;
      made->tableType = label::kTable;
      made->dataSourceId = tables_.front()->dataSourceId;
      table = made.get();
      connections_.emplace(table, connections_.at(tables_.front()));
      waiting_.emplace(table, std::move(made));
    }
    place(*table);
    return *table;
  }

  TAVFeature& columnOf(TAVClassifier& table, const std::string& name, TAVType* type) {
    const auto [columns, isNew] = columns_.try_emplace(&table);
    if (isNew)
      for (TAVFeature& known : table.features)
        columns->second.try_emplace(foldedName(known.physicalName), &known);
    TAVFeature*& column = columns->second[foldedName(name)];
    if (!column) column = &addColumn(table, name, type, true);
    return *column;
  }

  static TAVColumn& addColumn(TAVClassifier& table, const std::string& name, TAVType* type, bool structural) {
    auto made = make<TAVColumn>(name);
    made->setPhysicalName(name);
    made->structural = structural;
    made->position = static_cast<std::uint16_t>(table.features.getCount());
    if (type) made->addType(*type);
    return table.addFeatureUniqueName(std::move(made), '/');
  }

  void resolveQuery(TAVTable& table) {
    table.nativeType = "";
    const Query query = parseQuery(table.query);
    const QueryLineage lineage(query, *this);
    const QueryObject* plain = lineage.plainTable();
    if (!plain || !isOwn(*plain)) {
      place(table);
      queries_.push_back(&table);
      return;
    }
    TAVTable& whole = tableOf(*plain);
    plain_.emplace_back(&table, &whole);
    for (TAVFeature& column : table.features)
      replaced_.emplace(&column, &columnOf(whole, column.physicalName.str(), column.type.get()));
  }

  void writeWaiting() {
    for (TAVTable* table : queries_) writeLineage(*table);
    queries_.clear();
  }

  void writeLineage(TAVTable& table) {
    if (trimmed(table.query).empty()) return;
    const Query query = parseQuery(table.query);
    addResultColumns(table, query);
    QueryLineage lineage(query, *this);
    lineage.write(table);
    lineage.report(table, analyzer_);
    for (TAVFeature& feature : table.features)
      if (auto* column = as<TAVColumn>(&feature))
        column->structural = column->expression.empty() && querySourcesOf(*column).size() <= 1;
  }

  /// What the query names as its result is shown, also where the model does not read it.
  static void addResultColumns(TAVTable& table, const Query& query) {
    if (query.main == kNoQuery) return;
    std::unordered_set<std::string> known;
    for (const TAVFeature& column : table.features) known.insert(foldedName(column.physicalName));
    for (const QueryColumn& column : query.blocks[query.queries[query.main].blocks.front()].columns) {
      const std::string name = unquotedPart(column.name);
      if (!column.star && !name.empty() && known.insert(foldedName(name)).second)
        addColumn(table, name, nullptr, true);
    }
  }

  /// Lets what read a query that hands on a table read the table, each source in its place.
  void replacePlain() {
    std::unordered_set<const TAVObject*> seen;
    for (const auto& [table, whole] : plain_) {
      for (TAVFeature& column : table->features)
        for (TAVFeatureMap* map : listOf(column.sourceOf))
          if (seen.insert(map).second) replaceSources(*map);
      for (TAVClassifierMap* map : listOf(table->sourceOfClassifierMaps))
        if (seen.insert(map).second) replaceSources(*map);
    }
    for (const auto& [table, whole] : plain_) {
      if (details_) replaceInDetails(*table, *whole);
      waiting_.erase(table);
    }
  }

  void replaceInDetails(const TAVTable& table, const TAVTable& whole) {
    details_->replace(table, whole);
    for (const TAVFeature& column : table.features)
      if (const auto kept = replaced_.find(&column); kept != replaced_.end())
        details_->replace(column, *kept->second);
  }

  void replaceSources(TAVFeatureMap& map) const {
    const std::vector<TAVFeature*> sources = listOf(map.sourceFeatures);
    for (TAVFeature* source : sources) unlink<&TAVFeatureMap::sourceFeatures>(map, *source);
    for (TAVFeature* source : sources) {
      const auto found = replaced_.find(source);
      TAVFeature& kept = found == replaced_.end() ? *source : *found->second;
      if (!map.sourceFeatures.contains(kept)) map.addSourceFeature(kept);
    }
  }

  void replaceSources(TAVClassifierMap& map) const {
    const std::vector<TAVClassifier*> sources = listOf(map.sourceClassifiers);
    for (TAVClassifier* source : sources) unlink<&TAVClassifierMap::sourceClassifiers>(map, *source);
    for (TAVClassifier* source : sources) {
      const TAVFeature* column = source->features.first();
      const auto found = column ? replaced_.find(column) : replaced_.end();
      addSource(map, found == replaced_.end() ? *source : *found->second->classifier);
    }
  }

  TAVDesignPackage& package_;
  std::vector<TAVTable*> tables_;  // as the importer has put them
  TAVDsvReader::DSVExpressionAnalyzer analyzer_;
  std::unordered_map<const TAVTable*, TAVStoreConnection*> connections_;
  std::unordered_map<const TAVTable*, Owned<TAVTable>> waiting_;  // what is not put back yet
  std::unordered_map<std::string, TAVTable*> byName_;             // those of the database
  std::unordered_map<const TAVClassifier*, Columns> columns_;
  std::vector<TAVTable*> queries_;  // those of one reader, which are written once all of them are placed
  std::vector<std::pair<TAVTable*, TAVTable*>> plain_;  // queries, and the tables that they give way to
  std::unordered_map<const TAVFeature*, TAVFeature*> replaced_;  // columns of plain queries
  Details* details_;
};

}  // namespace

void resolveDatabaseQueries(TAVStoreModel& model, TAVLog* log, Details* details) {
  const TAVDesignPackage* views = model.designPackages.get(label::kDataSourceViews);
  if (!views) return;
  for (TAVNamespaceElement& element : views->namespaceElements) {
    auto* package = as<TAVDesignPackage>(&element);
    if (!package) continue;
    std::vector<TAVTable*> tables;
    bool marked = false;
    for (TAVNamespaceElement& part : package->namespaceElements) {
      auto* table = as<TAVTable>(&part);
      if (!table) continue;
      tables.push_back(table);
      marked |= table->nativeType == label::kUnresolvedQuery;
    }
    if (marked) ConnectionTables(*package, std::move(tables), log, details).resolve();
  }
}

}  // namespace tav
