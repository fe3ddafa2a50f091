#include "exports/sqlite_model.h"

#include <filesystem>
#include <vector>

#include "exports/answers/notes.h"
#include "exports/meeting.h"
#include "exports/node_rows.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "lineage/coverage.h"
#include "lineage/node_search.h"

namespace tav {
namespace {

constexpr int kFirstText = 5;  // of a node's parameters, behind the numbers

/// Takes a model away, with all that stands in ranges of its nodes.
void removeModel(SqliteDatabase& database, std::int64_t model, std::int64_t first, std::int64_t last) {
  const auto remove = [&](const char* text, std::initializer_list<std::int64_t> parameters) {
    SqliteStatement statement(database, text);
    int place = 0;
    for (const std::int64_t parameter : parameters) statement.bind(++place, parameter);
    statement.execute();
  };
  for (const char* text : {"DELETE FROM edges WHERE to_id BETWEEN ?1 AND ?2",
                           "DELETE FROM settings WHERE node_id BETWEEN ?1 AND ?2",
                           "DELETE FROM open_names WHERE node_id BETWEEN ?1 AND ?2",
                           "DELETE FROM nodes WHERE id BETWEEN ?1 AND ?2"})
    remove(text, {first, last});
  for (const char* text : {"DELETE FROM cube_counts WHERE model_id = ?1",
                           "DELETE FROM warnings WHERE model_id = ?1", "DELETE FROM models WHERE id = ?1"})
    remove(text, {model});
}

/// Takes the models of a source away, or that of a name alone, and gives the number of the last one, or 0.
std::int64_t removeModelsOf(SqliteDatabase& database, const std::string& source, const std::string* name) {
  struct Earlier {
    std::int64_t id, first, last;
  };
  std::vector<Earlier> all;
  {
    SqliteStatement earlier(database,
                            "SELECT id, first_node, last_node FROM models WHERE source = ?1 AND name = "
                            "coalesce(?2, name) ORDER BY id DESC");
    earlier.bind(1, source);
    if (name) earlier.bind(2, *name);
    while (earlier.next()) all.push_back({earlier.number(0), earlier.number(1), earlier.number(2)});
  }
  for (const Earlier& model : all) removeModel(database, model.id, model.first, model.last);
  return all.empty() ? 0 : all.back().id;
}

class ModelLoad {
 public:
  ModelLoad(SqliteDatabase& database, const LineageGraph& graph, const SqliteModel& place)
      : database_(database), graph_(graph), place_(place), name_(graph.modelName()) {}

  void run(std::span<const std::string> importWarnings) {
    model_ = removeModelsOf(database_, place_.source, place_.alone ? nullptr : &name_);
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
  void addModel() {
    if (model_ == 0) model_ = database_.number("SELECT coalesce(max(id), 0) + 1 FROM models");
    SqliteStatement insert(database_, "INSERT INTO models VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
    insert.bind(1, model_);
    insert.bind(2, place_.source);
    insert.bind(3, name_);
    insert.bind(4, graph_.isTabular() ? "tabular" : "multidimensional");
    const auto* store = as<TAVStoreModel>(&graph_.model());
    insert.bindOptional(5, store ? store->modificationTime.view() : std::string_view());
    insert.bind(6, first_);
    insert.bind(7, first_ + static_cast<std::int64_t>(graph_.nodes().size()) - 1);
    if (place_.version != 0) insert.bind(8, place_.version);
    insert.execute();
  }

  void addNodes() {
    SqliteStatement insert(database_,
                           "INSERT INTO nodes VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, "
                           "?14, ?15, ?16, ?17, ?18, ?19, ?20, ?21, ?22)");
    constexpr int kMeeting = kFirstText + static_cast<int>(kNodeColumns.size());
    insert.bind(2, model_);
    const NodeRows rows(graph_);
    const NodeNames names(graph_);
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
      const std::string meeting = meetingKey(graph_, id);
      insert.bindOptional(kMeeting, meeting);
      const std::string foldedText = foldedName(graph_.node(id).rawName);
      insert.bind(kMeeting + 1, foldedText);
      insert.bind(kMeeting + 2, std::int64_t{names.isUnique(id)});
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
    for (const std::string& text : graph_.notes()) add("note", text);
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
  const SqliteModel& place_;
  std::string name_;
  std::int64_t model_ = 0;
  std::int64_t first_ = 0;  // the number of its first node
};

}  // namespace

std::string canonicalSource(const std::string& input) {
  namespace fs = std::filesystem;
  std::error_code error;  // then it is written as it was named
  const fs::file_status status = fs::status(input, error);
  if (input != "-" && (fs::is_regular_file(status) || fs::is_directory(status))) {
    const fs::path path = fs::canonical(input, error);
    if (!error) return maskPasswords(path.string());
  }
  return maskPasswords(input);
}

void loadModel(SqliteDatabase& database, const LineageGraph& graph, const SqliteModel& model,
               std::span<const std::string> importWarnings) {
  ModelLoad(database, graph, model).run(importWarnings);
}

void removeModels(SqliteDatabase& database, const std::string& source) {
  removeModelsOf(database, source, nullptr);
}

}  // namespace tav
