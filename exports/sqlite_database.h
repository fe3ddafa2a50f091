#pragma once

// An SQLite database that is read or written in one transaction.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tav {

/// The version of the library that is loaded.
std::string_view sqliteVersion() noexcept;

enum class SqliteAccess : std::uint8_t {
  write,  ///< made when it is missing; other writers are kept out
  read,   ///< must be there; what others write meanwhile is not seen
};

/// An open database within a transaction of its own. Without commit(), or when anything throws, the database
/// stays as it was, and is not there if it was not. Every failure is a TAVException that names the path and
/// the cause.
class SqliteDatabase {
 public:
  /// Opens the file. Waits up to `patience` for others that are at work.
  SqliteDatabase(const std::string& path, std::chrono::milliseconds patience,
                 SqliteAccess access = SqliteAccess::write);
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;
  ~SqliteDatabase();

  /// Runs statements without parameters.
  void run(const char* statements);
  /// The number that a query gives in its only row and column.
  std::int64_t number(std::string_view query);
  void commit();
  /// Throws Message::databaseFailed with the path and this cause.
  [[noreturn]] void failWith(const std::string& cause) const;

 private:
  friend class SqliteStatement;

  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };

  void open(std::chrono::milliseconds patience, SqliteAccess access);
  /// Whether the file at the path is another by now.
  [[nodiscard]] bool hasMoved() const;
  /// Removes the file that was made for a transaction that has failed, unless others have written to it.
  void removeMade() noexcept;

  /// Throws with the database's own words when `code` is not one of success.
  void check(int code) const;

  std::string path_;
  std::unique_ptr<sqlite3, Close> database_;
  bool made_ = false;  // whether the file was not there, and nothing is in it yet
};

/// A prepared statement. Its parameters are numbered from 1, its columns from 0; a parameter that is not
/// bound anew keeps its value.
class SqliteStatement {
 public:
  SqliteStatement(SqliteDatabase& database, std::string_view text);

  /// The text must live until the next execute() or end of rows.
  void bind(int parameter, std::string_view text);
  /// The same, but NULL for an empty text.
  void bindOptional(int parameter, std::string_view text);
  void bind(int parameter, std::int64_t number);
  void bindNull(int parameter);
  /// Bytes that are no text; they must live as long.
  void bindBytes(int parameter, std::string_view bytes);

  /// Runs a statement that gives no rows.
  void execute();
  /// Goes to the next row of a query; false behind the last.
  bool next();
  [[nodiscard]] std::int64_t number(int column) const;
  /// A text or bytes, of NULL none. They live until the next row.
  [[nodiscard]] std::string_view text(int column) const;
  [[nodiscard]] bool isNull(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };

  SqliteDatabase& database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace tav
