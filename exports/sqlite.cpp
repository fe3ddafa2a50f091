#include "exports/sqlite.h"

#include "exports/answers/notes.h"
#include "exports/node_rows.h"
#include "exports/sqlite_database.h"
#include "exports/sqlite_schema.h"
#include "framework/std/mask.h"
#include "lineage/coverage.h"
#include "messages/message.h"

namespace tav {
namespace {

constexpr std::chrono::minutes kPatience{1};

/// Makes the tables and views of a new database. Throws when the file belongs to something else.
void prepare(SqliteDatabase& database, const std::string& path) {
  const std::int64_t application = database.number("PRAGMA application_id");
  const std::int64_t version = database.number("PRAGMA user_version");
  if (application == kSqliteApplication && version == kSqliteVersion) return;
  if (application == kSqliteApplication) {
    fail(Message::otherSchemaVersion, {path, std::to_string(version), std::to_string(kSqliteVersion)});
  }
  if (application != 0 || version != 0 || database.number("SELECT count(*) FROM sqlite_master") != 0)
    fail(Message::foreignDatabase, {path});
  database.run(kSqliteTables);
  database.run(kSqliteViews);
}

class ModelLoad {
 public:
  ModelLoad(SqliteDatabase& database, const LineageGraph& graph, const ExportOptions& options)
      : database_(database), graph_(graph), source_(maskPasswords(options.input)), name_(graph.modelName()) {}

  void run(std::span<const std::string> importWarnings) {
    removeEarlier();
    first_ = database_.number("SELECT coalesce(max(last_node), 0) + 1 FROM models");
    addModel();
    addNodes();
    addEdges();
    addSettings();
    addOpenNames();
    addCounts();
    addWarnings(importWarnings);
  }

 private:
  void removeEarlier() {
    SqliteStatement earlier(database_,
                            "SELECT id, first_node, last_node FROM models WHERE source = ?1 AND name = ?2");
    earlier.bind(1, source_);
    earlier.bind(2, name_);
    if (!earlier.next()) return;
    model_ = earlier.number(0);
    const std::int64_t first = earlier.number(1);
    const std::int64_t last = earlier.number(2);
    for (const char* text : {"DELETE FROM edges WHERE to_id BETWEEN ?1 AND ?2",
                             "DELETE FROM settings WHERE node_id BETWEEN ?1 AND ?2",
                             "DELETE FROM open_names WHERE node_id BETWEEN ?1 AND ?2",
                             "DELETE FROM nodes WHERE id BETWEEN ?1 AND ?2"})
      remove(text, {first, last});
    for (const char* text : {"DELETE FROM cube_counts WHERE model_id = ?1",
                             "DELETE FROM warnings WHERE model_id = ?1", "DELETE FROM models WHERE id = ?1"})
      remove(text, {model_});
  }

  void addModel() {
    if (model_ == 0) model_ = database_.number("SELECT coalesce(max(id), 0) + 1 FROM models");
    SqliteStatement insert(database_, "INSERT INTO models VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    insert.bind(1, model_);
    insert.bind(2, source_);
    insert.bind(3, name_);
    insert.bind(4, graph_.isTabular() ? "tabular" : "multidimensional");
    const auto* store = as<TAVStoreModel>(&graph_.model());
    insert.bindOptional(5, store ? store->modificationTime.view() : std::string_view());
    insert.bind(6, first_);
    insert.bind(7, first_ + static_cast<std::int64_t>(graph_.nodes().size()) - 1);
    insert.execute();
  }

  void addNodes() {
    SqliteStatement insert(database_,
                           "INSERT INTO nodes VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, "
                           "?14, ?15, ?16, ?17, ?18, ?19)");
    constexpr int kFirstText = 5;
    insert.bind(2, model_);
    const NodeRows rows(graph_);
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      insert.bind(1, numberOf(id));
      bindNode(insert, 3, graph_.node(id).owner);
      bindNode(insert, 4, graph_.cubeOf(id));
      const NodeRow row = rows.row(id);
      for (std::size_t i = 0; i < row.size(); ++i) {
        const int parameter = kFirstText + static_cast<int>(i);
        if (i <= kPathColumn)
          insert.bind(parameter, row[i]);
        else
          insert.bindOptional(parameter, row[i]);
      }
      insert.execute();
    }
  }

  void addEdges() {
    SqliteStatement insert(database_, "INSERT INTO edges VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
    for (const LineageEdge& edge : graph_.edges()) {
      insert.bind(1, numberOf(edge.from));
      insert.bind(2, numberOf(edge.to));
      insert.bind(3, edgeKindName(edge.kind));
      insert.bindOptional(4, rowOf(edge.kind).downstream);
      const std::string text = graph_.edgeText(edge);
      insert.bindOptional(5, text);
      insert.bind(6, std::int64_t{givesValue(edge.kind)});
      insert.bind(7, std::int64_t{edge.foundByGraph});
      insert.bind(8, std::int64_t{edge.replaces});
      insert.execute();
    }
  }

  void addSettings() {
    SqliteStatement insert(database_, "INSERT INTO settings VALUES(?1, ?2, ?3)");
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      for (const auto& [name, value] : graph_.settings(id)) {
        insert.bind(1, numberOf(id));
        insert.bind(2, name);
        insert.bind(3, value);
        insert.execute();
      }
    }
  }

  void addOpenNames() {
    SqliteStatement insert(database_, "INSERT INTO open_names VALUES(?1, ?2, ?3, ?4)");
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      for (const OpenNameText& name : graph_.openNames(id)) {
        insert.bind(1, numberOf(id));
        insert.bind(2, name.name);
        insert.bind(3, openNameStateText(name.state));
        insert.bindOptional(4, name.note);
        insert.execute();
      }
    }
  }

  void addCounts() {
    SqliteStatement insert(database_, "INSERT INTO cube_counts VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    insert.bind(1, model_);
    for (const CubeCoverage& cube : measureCoverage(graph_).cubes) {
      bindNode(insert, 2, cube.cube);
      int parameter = 2;
      for (const CoverageCount* kind : {&cube.attributes, &cube.measures})
        for (const std::size_t count : {kind->count, kind->reached})
          insert.bind(++parameter, static_cast<std::int64_t>(count));
      insert.bind(7, static_cast<std::int64_t>(cube.attributes.rowCounts + cube.measures.rowCounts));
      insert.execute();
    }
  }

  /// What the import said, and what the answers of this model leave out.
  void addWarnings(std::span<const std::string> importWarnings) {
    SqliteStatement insert(database_, "INSERT INTO warnings(model_id, origin, text) VALUES(?1, ?2, ?3)");
    insert.bind(1, model_);
    const auto add = [&](std::string_view origin, std::string_view text) {
      insert.bind(2, origin);
      insert.bind(3, text);
      insert.execute();
    };
    for (const std::string& text : importWarnings) add("import", maskPasswords(text));
    for (const std::string& text : answerNotes(graph_)) add("note", text);
  }

  void remove(const char* text, std::initializer_list<std::int64_t> parameters) {
    SqliteStatement statement(database_, text);
    int place = 0;
    for (const std::int64_t parameter : parameters) statement.bind(++place, parameter);
    statement.execute();
  }

  [[nodiscard]] std::int64_t numberOf(NodeId id) const { return first_ + id; }

  void bindNode(SqliteStatement& statement, int parameter, NodeId id) const {
    if (id == kNoNode)
      statement.bindNull(parameter);
    else
      statement.bind(parameter, numberOf(id));
  }

  SqliteDatabase& database_;
  const LineageGraph& graph_;
  std::string source_;
  std::string name_;
  std::int64_t model_ = 0;
  std::int64_t first_ = 0;  // the number of its first node
};

}  // namespace

void exportSqlite(const DetailedModel& model, const ExportOptions& options, const std::string& path,
                  std::chrono::milliseconds patience) {
  const LineageGraph graph(model);
  SqliteDatabase database(path, patience);
  prepare(database, path);
  ModelLoad(database, graph, options).run(options.warnings);
  database.run(kSqliteIndexes);
  database.commit();
}

extern const ExportFormat kSqliteFormat{
    .name = "sqlite",
    .description = "the lineage in an SQLite database, added to those that are in it",
    .writeFiles = [](const DetailedModel& model, const ExportOptions& options, const std::string& path) {
      exportSqlite(model, options, path, kPatience);
    }};

}  // namespace tav
