#include "exports/sqlite_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "messages/message.h"

namespace tav {
namespace {

/// SQLite takes an empty name and some that begin with a colon for databases in memory.
std::string fileName(const std::string& path) {
  return path.starts_with('/') ? path : "./" + path;
}

/// The byte of a database that whoever writes to it has locked, by the format of its files.
constexpr off_t kReservedByte = 0x40000001;

bool lockForWriting(int file) noexcept {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kReservedByte;
  lock.l_len = 1;
  return fcntl(file, F_SETLK, &lock) == 0;
}

}  // namespace

std::string_view sqliteVersion() noexcept {
  return sqlite3_libversion();
}

void SqliteDatabase::Close::operator()(sqlite3* database) const noexcept {
  sqlite3_close(database);  // rolls an open transaction back
}

SqliteDatabase::SqliteDatabase(const std::string& path, std::chrono::milliseconds patience,
                               SqliteAccess access)
    : path_(path) {
  try {
    // Another that made the file may have removed it while this one waited.
    do open(patience, access);
    while (hasMoved());
  } catch (...) {
    removeMade();
    throw;
  }
}

SqliteDatabase::~SqliteDatabase() {
  removeMade();
}

void SqliteDatabase::open(std::chrono::milliseconds patience, SqliteAccess access) {
  std::error_code ignored;  // what cannot be asked for is told by the database
  made_ = access == SqliteAccess::write && !std::filesystem::exists(path_, ignored) && !ignored;
  sqlite3* database = nullptr;
  // Also who reads must take back what a killed process has begun. What may not be written to is still read.
  const int mode = SQLITE_OPEN_READWRITE | (access == SqliteAccess::write ? SQLITE_OPEN_CREATE : 0);
  const int code = sqlite3_open_v2(fileName(path_).c_str(), &database,
                                   mode | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  database_.reset(database);
  check(code);
  check(sqlite3_busy_timeout(database, static_cast<int>(patience.count())));
  run("PRAGMA cache_size = -65536");
  run(access == SqliteAccess::read ? "BEGIN" : "BEGIN IMMEDIATE");
  // Another may have been faster to write.
  struct stat status {};
  made_ = made_ && stat(path_.c_str(), &status) == 0 && status.st_size == 0;
}

bool SqliteDatabase::hasMoved() const {
  int moved = 0;
  const int code = sqlite3_file_control(database_.get(), nullptr, SQLITE_FCNTL_HAS_MOVED, &moved);
  return code == SQLITE_OK && moved != 0;
}

void SqliteDatabase::removeMade() noexcept {
  if (!made_) return;
  // Where the transaction still runs it is taken back first, with its journal. If it cannot be, then all that
  // is in the file is of it.
  if (database_) sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
  const bool inTransaction = database_ && sqlite3_get_autocommit(database_.get()) == 0;
  // Whoever has waited for it must not write to what is about to go: so the file is locked again. SQLite
  // would take memory for that, and begin to write.
  const int file = ::open(path_.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
  if (file < 0) return;
  struct stat opened {};
  struct stat there {};
  if (lockForWriting(file) && fstat(file, &opened) == 0 && lstat(path_.c_str(), &there) == 0 &&
      opened.st_ino == there.st_ino && (opened.st_size == 0 || inTransaction))
    unlink(path_.c_str());
  close(file);
}

void SqliteDatabase::run(const char* statements) {
  check(sqlite3_exec(database_.get(), statements, nullptr, nullptr, nullptr));
}

std::int64_t SqliteDatabase::number(std::string_view query) {
  SqliteStatement statement(*this, query);
  statement.next();
  return statement.number(0);
}

void SqliteDatabase::commit() {
  run("COMMIT");
  made_ = false;
}

void SqliteDatabase::check(int code) const {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return;
    case SQLITE_NOTADB:
      fail(Message::foreignDatabase, {path_});
    case SQLITE_BUSY:
      fail(Message::databaseLocked, {path_});
    case SQLITE_CANTOPEN:
      failWith(std::string(sqlite3_errmsg(database_.get())) + ": " +
               std::generic_category().message(sqlite3_system_errno(database_.get())));
    default:
      failWith(sqlite3_errmsg(database_.get()));
  }
}

void SqliteDatabase::failWith(const std::string& cause) const {
  fail(Message::databaseFailed, {path_, cause});
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(SqliteDatabase& database, std::string_view text) : database_(database) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database.database_.get(), text.data(), static_cast<int>(text.size()),
                                      &statement, nullptr);
  statement_.reset(statement);
  database.check(code);
}

void SqliteStatement::bind(int parameter, std::string_view text) {
  // A text without bytes has no address, which would bind NULL.
  const char* bytes = text.empty() ? "" : text.data();
  database_.check(
      sqlite3_bind_text64(statement_.get(), parameter, bytes, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void SqliteStatement::bindOptional(int parameter, std::string_view text) {
  if (text.empty())
    bindNull(parameter);
  else
    bind(parameter, text);
}

void SqliteStatement::bind(int parameter, std::int64_t number) {
  database_.check(sqlite3_bind_int64(statement_.get(), parameter, number));
}

void SqliteStatement::bindNull(int parameter) {
  database_.check(sqlite3_bind_null(statement_.get(), parameter));
}

void SqliteStatement::bindBytes(int parameter, std::string_view bytes) {
  const char* first = bytes.empty() ? "" : bytes.data();
  database_.check(sqlite3_bind_blob64(statement_.get(), parameter, first, bytes.size(), SQLITE_STATIC));
}

void SqliteStatement::execute() {
  while (next()) continue;
}

bool SqliteStatement::next() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  const int reset = sqlite3_reset(statement_.get());
  database_.check(code == SQLITE_DONE ? reset : code);
  return false;
}

std::int64_t SqliteStatement::number(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string_view SqliteStatement::text(int column) const {
  const void* bytes = sqlite3_column_blob(statement_.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return bytes ? std::string_view(static_cast<const char*>(bytes), size) : std::string_view();
}

bool SqliteStatement::isNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

}  // namespace tav
