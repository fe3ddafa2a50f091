#include "exports/sqlite.h"

#include "exports/sqlite_database.h"
#include "exports/sqlite_model.h"
#include "exports/sqlite_schema.h"

namespace tav {
namespace {

constexpr std::chrono::minutes kPatience{1};

}  // namespace

void exportSqlite(const DetailedModel& model, const ExportOptions& options, const std::string& path,
                  std::chrono::milliseconds patience) {
  const LineageGraph graph(model, options.map);
  SqliteDatabase database(path, patience);
  prepareSchema(database, path);
  loadModel(database, graph, {.source = canonicalSource(options.input)}, options.warnings);
  database.run(kSqliteIndexes);
  database.commit();
}

extern const ExportFormat kSqliteFormat{
    .name = "sqlite",
    .description = "the lineage in an SQLite database, added to those that are in it",
    .writeFiles = [](const DetailedModel& model, const ExportOptions& options,
                     const std::string& path) { exportSqlite(model, options, path, kPatience); },
    .extension = ".db",
    .joinsModels = true};

}  // namespace tav
