#include "exports/estate_names.h"

#include <unordered_set>

#include "exports/sqlite_database.h"
#include "exports/sqlite_schema.h"

namespace tav {
namespace {

constexpr std::chrono::milliseconds kPatience{200};  // with those who write to it
constexpr std::int64_t kMostNodes = 500'000;

bool isLarge(SqliteDatabase& database) {
  const std::string some = "SELECT 1 FROM nodes LIMIT " + std::to_string(kMostNodes + 1);
  return database.number("SELECT count(*) FROM (" + some + ")") > kMostNodes;
}

}  // namespace

void completeNames(const std::string& path, const std::vector<EstateModel>& models,
                   NameCompletion& completion) {
  SqliteDatabase database(path, kPatience, SqliteAccess::read);
  requireSchema(database, path);
  if (isLarge(database)) return;
  std::unordered_set<std::int64_t> asked;
  for (const EstateModel& model : models) asked.insert(model.id);
  SqliteStatement nodes(database, "SELECT model_id, name, qualified_name, path FROM nodes");
  while (nodes.next())
    if (asked.contains(nodes.number(0))) completion.add(nodes.text(1), nodes.text(2), nodes.text(3));
}

}  // namespace tav
