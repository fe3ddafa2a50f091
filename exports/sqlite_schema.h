#pragma once

// The tables and views that an SQLite database of models has. docs/tables.md explains them to those who ask
// it.

#include <cstdint>
#include <string>

namespace tav {

class SqliteDatabase;

/// Makes the tables and views of a new database. Throws when the file belongs to something else or has the
/// tables of another version.
void prepareSchema(SqliteDatabase& database, const std::string& path);
/// Whether nothing is in it yet.
bool isNewDatabase(SqliteDatabase& database);
/// The same as prepareSchema() for a database that is only read: throws as well when it is new.
void requireSchema(SqliteDatabase& database, const std::string& path);

/// In the header of the file: "XMLB", and which tables and views it has.
inline constexpr std::int64_t kSqliteApplication = 0x584D4C42;
inline constexpr std::int64_t kSqliteVersion = 6;

/// The numbers of a model's nodes are a range of their own, so that all of them can be told apart and removed
/// at once. Letter case does not tell paths apart, as it does not in SQL Server and MDX.
inline constexpr const char* kSqliteTables = R"SQL(
PRAGMA application_id = 0x584D4C42;
PRAGMA user_version = 6;
CREATE TABLE versions(
  id INTEGER PRIMARY KEY,
  source TEXT NOT NULL,
  imported TEXT NOT NULL,
  hash TEXT NOT NULL,
  name TEXT NOT NULL,
  document BLOB,
  state TEXT NOT NULL,
  reader TEXT NOT NULL
);
CREATE TABLE models(
  id INTEGER PRIMARY KEY,
  source TEXT NOT NULL,
  name TEXT NOT NULL,
  kind TEXT NOT NULL,
  modified TEXT,
  first_node INTEGER NOT NULL,
  last_node INTEGER NOT NULL,
  version_id INTEGER REFERENCES versions(id),
  UNIQUE(source, name)
);
CREATE TABLE nodes(
  id INTEGER PRIMARY KEY,
  model_id INTEGER NOT NULL REFERENCES models(id),
  owner_id INTEGER REFERENCES nodes(id),
  cube_id INTEGER REFERENCES nodes(id),
  kind TEXT NOT NULL,
  name TEXT NOT NULL,
  qualified_name TEXT NOT NULL,
  path TEXT NOT NULL COLLATE NOCASE,
  server TEXT,
  database TEXT,
  schema TEXT,
  data_type TEXT,
  expression TEXT,
  language TEXT,
  aggregation TEXT,
  description TEXT,
  hidden INTEGER,
  has_lineage TEXT,
  reason TEXT,
  meeting TEXT,
  folded_name TEXT NOT NULL,
  unique_name INTEGER NOT NULL
);
CREATE TABLE edges(
  from_id INTEGER NOT NULL REFERENCES nodes(id),
  to_id INTEGER NOT NULL REFERENCES nodes(id),
  kind TEXT NOT NULL,
  words TEXT,
  text TEXT,
  gives_value INTEGER NOT NULL,
  found_by_graph INTEGER NOT NULL,
  replaces INTEGER NOT NULL
);
CREATE TABLE settings(
  node_id INTEGER NOT NULL REFERENCES nodes(id),
  name TEXT NOT NULL COLLATE NOCASE,
  value TEXT NOT NULL
);
CREATE TABLE open_names(
  node_id INTEGER NOT NULL REFERENCES nodes(id),
  name TEXT NOT NULL,
  state TEXT NOT NULL,
  note TEXT
);
CREATE TABLE cube_counts(
  model_id INTEGER NOT NULL REFERENCES models(id),
  cube_id INTEGER REFERENCES nodes(id),
  attributes INTEGER NOT NULL,
  attributes_with_lineage INTEGER NOT NULL,
  measures INTEGER NOT NULL,
  measures_with_lineage INTEGER NOT NULL,
  row_counts INTEGER NOT NULL
);
CREATE TABLE address_rules(
  text TEXT NOT NULL
);
CREATE TABLE warnings(
  id INTEGER PRIMARY KEY,
  model_id INTEGER NOT NULL REFERENCES models(id),
  origin TEXT NOT NULL,
  text TEXT NOT NULL
);
)SQL";

/// Made behind the rows of the first model: that is faster.
inline constexpr const char* kSqliteIndexes = R"SQL(
CREATE INDEX IF NOT EXISTS nodes_by_path ON nodes(path);
CREATE INDEX IF NOT EXISTS nodes_by_name ON nodes(folded_name, model_id);
CREATE INDEX IF NOT EXISTS nodes_by_owner ON nodes(owner_id) WHERE owner_id IS NOT NULL;
CREATE INDEX IF NOT EXISTS nodes_by_meeting ON nodes(meeting) WHERE meeting IS NOT NULL;
CREATE INDEX IF NOT EXISTS versions_by_source ON versions(source, id);
CREATE INDEX IF NOT EXISTS edges_by_source ON edges(from_id, to_id);
CREATE INDEX IF NOT EXISTS edges_by_target ON edges(to_id, from_id);
CREATE INDEX IF NOT EXISTS settings_by_node ON settings(node_id);
CREATE INDEX IF NOT EXISTS settings_by_name ON settings(name);
CREATE INDEX IF NOT EXISTS open_names_by_node ON open_names(node_id);
CREATE INDEX IF NOT EXISTS cube_counts_by_model ON cube_counts(model_id);
CREATE INDEX IF NOT EXISTS warnings_by_model ON warnings(model_id);
)SQL";

/// A condition on a view's start cannot reach into a recursion that the view is made of. So the
/// recursion stands in a subquery for each start, which the condition has chosen before.
inline constexpr const char* kSqliteViews = R"SQL(
CREATE VIEW lineage AS
SELECT m.source, m.name AS model, f.kind AS from_kind, f.path AS from_path, t.kind AS to_kind, t.path AS to_path,
       e.kind, e.words, e.text, e.gives_value, t.expression, e.found_by_graph, e.replaces
FROM edges e JOIN nodes f ON f.id = e.from_id JOIN nodes t ON t.id = e.to_id JOIN models m ON m.id = t.model_id;

CREATE VIEW upstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
JOIN json_each((
  WITH RECURSIVE reached(id) AS (
    SELECT from_id FROM edges WHERE to_id = s.id
    UNION SELECT e.from_id FROM reached JOIN edges e ON e.to_id = reached.id)
  SELECT json_group_array(id) FROM reached)) r
JOIN nodes n ON n.id = r.value;

CREATE VIEW downstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
JOIN json_each((
  WITH RECURSIVE reached(id) AS (
    SELECT to_id FROM edges WHERE from_id = s.id
    UNION SELECT e.to_id FROM reached JOIN edges e ON e.from_id = reached.id)
  SELECT json_group_array(id) FROM reached)) r
JOIN nodes n ON n.id = r.value;

CREATE VIEW value_upstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
JOIN json_each((
  WITH RECURSIVE reached(id) AS (
    SELECT from_id FROM edges WHERE to_id = s.id AND (gives_value = 1 OR kind = 'condition')
    UNION SELECT e.from_id FROM reached JOIN edges e ON e.to_id = reached.id AND (e.gives_value = 1 OR e.kind = 'condition'))
  SELECT json_group_array(id) FROM reached)) r
JOIN nodes n ON n.id = r.value;

CREATE VIEW value_downstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
JOIN json_each((
  WITH RECURSIVE reached(id) AS (
    SELECT to_id FROM edges WHERE from_id = s.id AND (gives_value = 1 OR kind = 'condition')
    UNION SELECT e.to_id FROM reached JOIN edges e ON e.from_id = reached.id AND (e.gives_value = 1 OR e.kind = 'condition'))
  SELECT json_group_array(id) FROM reached)) r
JOIN nodes n ON n.id = r.value;

CREATE VIEW unresolved AS
SELECT m.source, m.name AS model, c.name AS cube, n.kind, n.path, o.name, o.state, o.note, n.expression
FROM open_names o JOIN nodes n ON n.id = o.node_id JOIN models m ON m.id = n.model_id
LEFT JOIN nodes c ON c.id = n.cube_id;

CREATE VIEW coverage AS
SELECT m.source, m.name AS model, c.name AS cube,
       k.attributes, k.attributes_with_lineage, k.measures, k.measures_with_lineage, k.row_counts,
       coalesce((k.attributes_with_lineage + k.measures_with_lineage) * 100 /
                nullif(k.attributes + k.measures, 0), 100) AS percent
FROM cube_counts k JOIN models m ON m.id = k.model_id LEFT JOIN nodes c ON c.id = k.cube_id;

CREATE VIEW shared_columns AS
SELECT min(n.path) AS path, count(DISTINCT n.model_id) AS models, group_concat(DISTINCT m.source) AS sources
FROM nodes n JOIN models m ON m.id = n.model_id
WHERE n.meeting IS NOT NULL AND n.kind = 'databaseColumn'
GROUP BY n.meeting HAVING count(DISTINCT n.model_id) > 1;
)SQL";

}  // namespace tav
