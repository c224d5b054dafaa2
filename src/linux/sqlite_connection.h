#pragma once

// A thin owner of one SQLite connection and its prepared statements, with
// the error text a person can act on. Not thread-safe: its owner guards it.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace sodam {

class SqliteStatement {
 public:
  SqliteStatement(sqlite3* db, std::string_view sql);
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  // SQLITE_OK when the text compiled.
  int prepared() const { return prepared_; }

  // Clears the last run and its bindings; parameters count from 1.
  SqliteStatement& reset();
  SqliteStatement& bind(int index, std::int64_t value);
  SqliteStatement& bind(int index, double value);
  SqliteStatement& bindText(int index, std::string_view text);
  SqliteStatement& bindBlob(int index, std::span<const std::uint8_t> bytes);

  // SQLITE_ROW while rows come, SQLITE_DONE at the end, or the error.
  int step();

  int columnType(int index) const;
  std::int64_t columnInteger(int index) const;
  double columnReal(int index) const;
  std::string_view columnText(int index) const;
  std::span<const std::uint8_t> columnBlob(int index) const;

 private:
  sqlite3_stmt* statement_ = nullptr;
  int prepared_ = 0;
};

class SqliteConnection {
 public:
  // Opens (creating when missing) the database file; `opened()` tells.
  explicit SqliteConnection(const std::filesystem::path& file);
  ~SqliteConnection();
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  // SQLITE_OK, or why the file could not be opened.
  int opened() const { return opened_; }
  // Runs statements that return nothing worth keeping; the first error.
  int execute(std::string_view sql);
  // The first column of the first row of a query, as text.
  int queryText(std::string_view sql, std::string& result);
  std::unique_ptr<SqliteStatement> prepare(std::string_view sql) const;

  // What went wrong with the last call that returned `code`, with the
  // system's reason when the operating system refused.
  std::string cause(int code) const;
  // The database's contents cannot be trusted: not a database, or damaged.
  static bool isDamage(int code);

 private:
  sqlite3* db_ = nullptr;
  int opened_ = 0;
};

}  // namespace sodam
