-- The tables and views of an estate database (see docs/tables.md) for PostgreSQL 15 or later. Run it in an empty
-- database; docs/scale.md says how to fill it.

-- Letter case does not tell paths apart.
CREATE EXTENSION IF NOT EXISTS citext;

CREATE TABLE versions(
  id BIGINT PRIMARY KEY,
  source TEXT NOT NULL,
  imported TEXT NOT NULL,
  hash TEXT NOT NULL,
  name TEXT NOT NULL,
  document BYTEA,
  state TEXT NOT NULL,
  reader TEXT NOT NULL
);
CREATE TABLE models(
  id BIGINT PRIMARY KEY,
  source TEXT NOT NULL,
  name TEXT NOT NULL,
  kind TEXT NOT NULL,
  modified TEXT,
  first_node BIGINT NOT NULL,
  last_node BIGINT NOT NULL,
  version_id BIGINT REFERENCES versions(id),
  UNIQUE(source, name)
);
CREATE TABLE nodes(
  id BIGINT PRIMARY KEY,
  model_id BIGINT NOT NULL REFERENCES models(id),
  owner_id BIGINT,
  cube_id BIGINT,
  kind TEXT NOT NULL,
  name TEXT NOT NULL,
  qualified_name TEXT NOT NULL,
  path CITEXT NOT NULL,
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
  from_id BIGINT NOT NULL REFERENCES nodes(id),
  to_id BIGINT NOT NULL REFERENCES nodes(id),
  kind TEXT NOT NULL,
  words TEXT,
  text TEXT,
  gives_value INTEGER NOT NULL,
  found_by_graph INTEGER NOT NULL,
  replaces INTEGER NOT NULL
);
CREATE TABLE settings(
  node_id BIGINT NOT NULL REFERENCES nodes(id),
  name CITEXT NOT NULL,
  value TEXT NOT NULL
);
CREATE TABLE open_names(
  node_id BIGINT NOT NULL REFERENCES nodes(id),
  name TEXT NOT NULL,
  state TEXT NOT NULL,
  note TEXT
);
CREATE TABLE cube_counts(
  model_id BIGINT NOT NULL REFERENCES models(id),
  cube_id BIGINT REFERENCES nodes(id),
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
  id BIGINT PRIMARY KEY,
  model_id BIGINT NOT NULL REFERENCES models(id),
  origin TEXT NOT NULL,
  text TEXT NOT NULL
);

-- A path may be longer than what an index of PostgreSQL takes: it is found by its hash.
CREATE INDEX nodes_by_path ON nodes USING hash(path);
CREATE INDEX nodes_by_name ON nodes USING hash(folded_name);
CREATE INDEX nodes_by_model ON nodes(model_id);
CREATE INDEX nodes_by_owner ON nodes(owner_id) WHERE owner_id IS NOT NULL;
CREATE INDEX nodes_by_meeting ON nodes USING hash(meeting) WHERE meeting IS NOT NULL;
CREATE INDEX versions_by_source ON versions(source, id);
CREATE INDEX edges_by_source ON edges(from_id, to_id);
CREATE INDEX edges_by_target ON edges(to_id, from_id);
CREATE INDEX settings_by_node ON settings(node_id);
CREATE INDEX settings_by_name ON settings USING hash(name);
CREATE INDEX open_names_by_node ON open_names(node_id);
CREATE INDEX cube_counts_by_model ON cube_counts(model_id);
CREATE INDEX warnings_by_model ON warnings(model_id);

CREATE VIEW lineage AS
SELECT m.source, m.name AS model, f.kind AS from_kind, f.path AS from_path, t.kind AS to_kind, t.path AS to_path,
       e.kind, e.words, e.text, e.gives_value, t.expression, e.found_by_graph, e.replaces
FROM edges e JOIN nodes f ON f.id = e.from_id JOIN nodes t ON t.id = e.to_id JOIN models m ON m.id = t.model_id;

CREATE VIEW upstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
CROSS JOIN LATERAL (
  WITH RECURSIVE reached(id) AS (
    SELECT from_id FROM edges WHERE to_id = s.id
    UNION SELECT e.from_id FROM reached JOIN edges e ON e.to_id = reached.id)
  SELECT id FROM reached) r
JOIN nodes n ON n.id = r.id;

CREATE VIEW downstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
CROSS JOIN LATERAL (
  WITH RECURSIVE reached(id) AS (
    SELECT to_id FROM edges WHERE from_id = s.id
    UNION SELECT e.to_id FROM reached JOIN edges e ON e.from_id = reached.id)
  SELECT id FROM reached) r
JOIN nodes n ON n.id = r.id;

CREATE VIEW value_upstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
CROSS JOIN LATERAL (
  WITH RECURSIVE reached(id) AS (
    SELECT from_id FROM edges WHERE to_id = s.id AND (gives_value = 1 OR kind = 'condition')
    UNION SELECT e.from_id FROM reached JOIN edges e
      ON e.to_id = reached.id AND (e.gives_value = 1 OR e.kind = 'condition'))
  SELECT id FROM reached) r
JOIN nodes n ON n.id = r.id;

CREATE VIEW value_downstream AS
SELECT m.source, m.name AS model, s.path AS start_path, s.kind AS start_kind, n.id, n.kind, n.name, n.path,
       n.expression
FROM nodes s JOIN models m ON m.id = s.model_id
CROSS JOIN LATERAL (
  WITH RECURSIVE reached(id) AS (
    SELECT to_id FROM edges WHERE from_id = s.id AND (gives_value = 1 OR kind = 'condition')
    UNION SELECT e.to_id FROM reached JOIN edges e
      ON e.from_id = reached.id AND (e.gives_value = 1 OR e.kind = 'condition'))
  SELECT id FROM reached) r
JOIN nodes n ON n.id = r.id;

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
SELECT min(n.path) AS path, count(DISTINCT n.model_id) AS models, string_agg(DISTINCT m.source, ',') AS sources
FROM nodes n JOIN models m ON m.id = n.model_id
WHERE n.meeting IS NOT NULL AND n.kind = 'databaseColumn'
GROUP BY n.meeting HAVING count(DISTINCT n.model_id) > 1;
