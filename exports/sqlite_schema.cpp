#include "exports/sqlite_schema.h"

#include "exports/sqlite_database.h"
#include "messages/message.h"

namespace tav {

namespace {

/// Whether the database has the tables. Throws when it has those of another version.
bool hasSchema(SqliteDatabase& database, const std::string& path) {
  if (database.number("PRAGMA application_id") != kSqliteApplication) return false;
  const std::int64_t version = database.number("PRAGMA user_version");
  if (version == kSqliteVersion) return true;
  fail(Message::otherSchemaVersion, {path, std::to_string(version), std::to_string(kSqliteVersion)});
}

}  // namespace

bool isNewDatabase(SqliteDatabase& database) {
  return database.number("PRAGMA application_id") == 0 && database.number("PRAGMA user_version") == 0 &&
         database.number("SELECT count(*) FROM sqlite_master") == 0;
}

void prepareSchema(SqliteDatabase& database, const std::string& path) {
  if (hasSchema(database, path)) return;
  if (!isNewDatabase(database)) fail(Message::foreignDatabase, {path});
  database.run(kSqliteTables);
  database.run(kSqliteViews);
}

void requireSchema(SqliteDatabase& database, const std::string& path) {
  if (!hasSchema(database, path)) fail(Message::foreignDatabase, {path});
}

}  // namespace tav
