#include "tests/tables/questions.h"

#include <sqlite3.h>

namespace tav::test {

std::string ask(const std::string& database, const std::string& query) {
  sqlite3* opened = nullptr;
  std::string shown;
  const auto addRow = [](void* text, int count, char** cells, char** names) {
    auto& rows = *static_cast<std::string*>(text);
    const auto add = [&](char** texts) {
      for (int i = 0; i < count; ++i) rows.append(i == 0 ? "" : "|").append(texts[i] ? texts[i] : "");
      rows += '\n';
    };
    if (rows.empty()) add(names);
    add(cells);
    return 0;
  };
  if (sqlite3_open_v2(database.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
      sqlite3_exec(opened, query.c_str(), addRow, &shown, nullptr) != SQLITE_OK)
    shown += std::string("error: ") + sqlite3_errmsg(opened) + "\n";
  sqlite3_close(opened);
  return shown;
}

void whileLocked(const std::string& database, const std::function<void()>& action) {
  sqlite3* opened = nullptr;
  sqlite3_open(database.c_str(), &opened);
  sqlite3_exec(opened, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  action();
  sqlite3_close(opened);
}

}  // namespace tav::test
