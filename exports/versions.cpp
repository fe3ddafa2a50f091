#include "exports/versions.h"

#include <array>
#include <ctime>
#include <filesystem>
#include <stdexcept>

#include "exports/deflated.h"
#include "exports/sqlite_database.h"
#include "exports/sqlite_model.h"
#include "exports/sqlite_schema.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/serialization/model_writer.h"
#include "framework/std/file_reader.h"
#include "lineage/lineage_graph.h"
#include "messages/message.h"

namespace tav {
namespace {

std::string now() {
  return isoTime(getSourceDateEpoch().value_or(std::time(nullptr)));
}

std::string deflatedDocument(const DetailedModel& model) {
  DeflatedText text;
  std::ostream out(&text);
  writeModel(model.model, out, model.details, Passwords::masked);
  return text.finish();
}

/// A version from a row, in which its number, name, time and state stand from `column` on.
EstateVersion versionIn(const SqliteStatement& row, int column) {
  return {row.number(column), std::string(row.text(column + 1)), std::string(row.text(column + 2)),
          std::string(row.text(column + 3))};
}

/// The version of a source that its model is made of, if it is of this content; 0 for none.
std::int64_t currentVersion(SqliteDatabase& database, const EstateDefinition& definition) {
  SqliteStatement query(database,
                        "SELECT v.id FROM models m JOIN versions v ON v.id = m.version_id "
                        "WHERE m.source = ?1 AND v.hash = ?2");
  query.bind(1, definition.source);
  query.bind(2, definition.hash);
  return query.next() ? query.number(0) : 0;
}

struct NewVersion {
  std::string_view name;
  std::string_view document;
  std::string_view state;
};

/// Content that is the same is no new version, only read anew: by another program, or because it was asked
/// for.
std::int64_t putVersion(SqliteDatabase& database, const EstateDefinition& definition,
                        const NewVersion& version) {
  const std::int64_t current = definition.hash.empty() ? 0 : currentVersion(database, definition);
  const std::int64_t id =
      current != 0 ? current : database.number("SELECT coalesce(max(id), 0) + 1 FROM versions");
  SqliteStatement put(database,
                      "INSERT INTO versions(id, source, imported, hash, name, document, state, reader) "
                      "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8) ON CONFLICT(id) DO UPDATE SET "
                      "name = excluded.name, document = excluded.document, state = excluded.state, "
                      "reader = excluded.reader");
  const std::string time = now();
  put.bind(1, id);
  put.bind(2, definition.source);
  put.bind(3, time);
  put.bind(4, definition.hash);
  put.bind(5, version.name);
  if (!version.document.empty()) put.bindBytes(6, version.document);
  put.bind(7, version.state);
  put.bind(8, definition.reader);
  put.execute();
  return id;
}

void dropOlderDocuments(SqliteDatabase& database, const std::string& source, std::int64_t current) {
  SqliteStatement drop(database, "UPDATE versions SET document = NULL WHERE source = ?1 AND id <> ?2");
  drop.bind(1, source);
  drop.bind(2, current);
  drop.execute();
}

}  // namespace

bool isEstate(const std::string& path) {
  constexpr std::string_view kSqliteMark{"SQLite format 3\0", 16};
  constexpr std::size_t kApplicationAt = 68;  // in the header of the file
  constexpr std::size_t kBytes = 4;
  std::array<char, kApplicationAt + kBytes> header{};
  FileReader file;
  if (!file.open(path) || file.read(header.data(), header.size()) < header.size()) return false;
  std::int64_t application = 0;
  for (std::size_t i = 0; i < kBytes; ++i)
    application = application * 256 + static_cast<unsigned char>(header[kApplicationAt + i]);
  const std::string_view bytes(header.data(), header.size());
  return bytes.starts_with(kSqliteMark) && application == kSqliteApplication;
}

std::vector<EstateModel> modelsOf(const std::string& path, const std::optional<std::string>& source) {
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  requireSchema(database, path);
  std::string text(
      "SELECT m.id, m.source, m.name, v.id, v.name, v.imported, v.state FROM models m LEFT JOIN versions v "
      "ON v.id = m.version_id ");
  SqliteStatement query(
      database, text.append(source ? "WHERE m.source = ?1 " : "").append("ORDER BY m.source, m.name"));
  if (source) query.bind(1, *source);
  std::vector<EstateModel> models;
  while (query.next()) {
    EstateModel& model = models.emplace_back(
        EstateModel{query.number(0), std::string(query.text(1)), std::string(query.text(2)), {}});
    if (!query.isNull(3)) model.version = versionIn(query, 3);
  }
  return models;
}

void makeEstate(const std::string& path) {
  SqliteDatabase database(path, kEstatePatience);
  prepareSchema(database, path);
  database.commit();
}

std::string addressRulesOf(const std::string& path) {
  std::error_code ignored;  // what cannot be asked for is told where it is written
  if (!std::filesystem::exists(path, ignored)) return {};
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  if (isNewDatabase(database)) return {};  // another import is about to fill it
  requireSchema(database, path);
  SqliteStatement query(database, "SELECT text FROM address_rules");
  return query.next() ? std::string(query.text(0)) : std::string();
}

void setAddressRules(const std::string& path, std::string_view rules) {
  SqliteDatabase database(path, kEstatePatience);
  prepareSchema(database, path);
  database.run("DELETE FROM address_rules");
  SqliteStatement insert(database, "INSERT INTO address_rules VALUES(?1)");
  insert.bind(1, rules);
  if (!rules.empty()) insert.execute();
  database.commit();
}

std::optional<EstateVersion> findUnchanged(const std::string& path, const EstateDefinition& definition) {
  std::error_code ignored;  // what cannot be asked for is told where it is written
  if (definition.hash.empty() || !std::filesystem::exists(path, ignored)) return std::nullopt;
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  if (isNewDatabase(database)) return std::nullopt;
  requireSchema(database, path);
  SqliteStatement query(
      database,
      "SELECT v.id, v.name, v.imported, v.state FROM models m JOIN versions v "
      "ON v.id = m.version_id WHERE m.source = ?1 AND v.hash = ?2 AND v.reader = ?3 AND v.state <> ?4");
  query.bind(1, definition.source);
  query.bind(2, definition.hash);
  query.bind(3, definition.reader);
  query.bind(4, kStateIncomplete);
  if (!query.next()) return std::nullopt;
  return versionIn(query, 0);
}

void importIntoEstate(const std::string& path, const EstateDefinition& definition, const DetailedModel& model,
                      const EstateImport& import) {
  const std::string document = deflatedDocument(model);
  const LineageGraph graph(model, import.map);
  SqliteDatabase database(path, kEstatePatience);
  prepareSchema(database, path);
  const std::string name = graph.modelName();
  const std::int64_t version = putVersion(database, definition, {name, document, import.state});
  if (!import.history) dropOlderDocuments(database, definition.source, version);
  loadModel(database, graph, {.source = definition.source, .version = version, .alone = true},
            import.warnings);
  database.run(kSqliteIndexes);
  database.commit();
}

std::vector<EstateChange> changesBetween(const std::string& path, const EstateSpan& span) {
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  requireSchema(database, path);
  SqliteStatement query(
      database,
      "SELECT p.source, o.id, o.name, o.imported, o.state, n.id, n.name, n.imported, n.state "
      "FROM (SELECT source, max(id) FILTER (WHERE imported <= ?1) AS old, "
      "max(id) FILTER (WHERE imported <= ?2) AS new FROM versions GROUP BY source) p "
      "LEFT JOIN versions o ON o.id = p.old AND o.state <> ?3 "
      "LEFT JOIN versions n ON n.id = p.new AND n.state <> ?3 "
      "WHERE o.hash IS NOT n.hash ORDER BY p.source");
  query.bind(1, span.since);
  query.bind(2, span.until);
  query.bind(3, kStateRemoved);
  std::vector<EstateChange> changes;
  while (query.next()) {
    EstateChange& change = changes.emplace_back(EstateChange{std::string(query.text(0)), {}, {}});
    if (!query.isNull(1)) change.before = versionIn(query, 1);
    if (!query.isNull(5)) change.after = versionIn(query, 5);
  }
  return changes;
}

std::string documentOf(const std::string& path, const std::string& source, const EstateVersion& version) {
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  SqliteStatement query(database, "SELECT document FROM versions WHERE id = ?1");
  query.bind(1, version.id);
  if (!query.next() || query.isNull(0)) fail(Message::documentNotKept, {source, version.imported});
  try {
    return inflateText(query.text(0));
  } catch (const std::runtime_error& error) {
    fail(Message::databaseFailed, {path, error.what()});
  }
}

std::vector<std::string> sourcesBelow(const std::string& path, const std::string& folder) {
  SqliteDatabase database(path, kEstatePatience, SqliteAccess::read);
  requireSchema(database, path);
  SqliteStatement query(
      database, "SELECT DISTINCT source FROM models WHERE substr(source, 1, length(?1)) = ?1 ORDER BY 1");
  const std::string beginning = folder.ends_with('/') ? folder : folder + "/";
  query.bind(1, beginning);
  std::vector<std::string> sources;
  while (query.next()) sources.emplace_back(query.text(0));
  return sources;
}

void removeFromEstate(const std::string& path, std::span<const std::string> sources) {
  SqliteDatabase database(path, kEstatePatience);
  requireSchema(database, path);
  for (const std::string& source : sources) {
    removeModels(database, source);
    putVersion(database, {source, {}, {}}, {{}, {}, kStateRemoved});
  }
  database.commit();
}

}  // namespace tav
