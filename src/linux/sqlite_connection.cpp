#include "linux/sqlite_connection.h"

#include <sqlite3.h>

#include <cstring>

namespace sodam {

namespace {
// How long a call waits for another connection (such as the sqlite3 tool
// looking in) to let go of the database before it gives up.
constexpr int busyMilliseconds = 5000;
}  // namespace

SqliteStatement::SqliteStatement(sqlite3* db, std::string_view sql) {
  prepared_ = sqlite3_prepare_v3(db, sql.data(), static_cast<int>(sql.size()),
                                 SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
}

SqliteStatement::~SqliteStatement() {
  sqlite3_finalize(statement_);
}

SqliteStatement& SqliteStatement::reset() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
  return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::int64_t value) {
  sqlite3_bind_int64(statement_, index, value);
  return *this;
}

SqliteStatement& SqliteStatement::bind(int index, double value) {
  sqlite3_bind_double(statement_, index, value);
  return *this;
}

SqliteStatement& SqliteStatement::bindText(int index, std::string_view text) {
  sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
  return *this;
}

SqliteStatement& SqliteStatement::bindBlob(int index, std::span<const std::uint8_t> bytes) {
  // An empty blob is still a blob, not NULL: the pointer must not be null.
  static const std::uint8_t none = 0;
  sqlite3_bind_blob64(statement_, index, bytes.empty() ? &none : bytes.data(), bytes.size(),
                      SQLITE_STATIC);
  return *this;
}

int SqliteStatement::step() {
  return sqlite3_step(statement_);
}

int SqliteStatement::columnType(int index) const {
  return sqlite3_column_type(statement_, index);
}

std::int64_t SqliteStatement::columnInteger(int index) const {
  return sqlite3_column_int64(statement_, index);
}

double SqliteStatement::columnReal(int index) const {
  return sqlite3_column_double(statement_, index);
}

std::string_view SqliteStatement::columnText(int index) const {
  auto text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, index));
  return text ? std::string_view(text,
                                 static_cast<std::size_t>(sqlite3_column_bytes(statement_, index)))
              : std::string_view();
}

std::span<const std::uint8_t> SqliteStatement::columnBlob(int index) const {
  auto bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, index));
  auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, index));
  return bytes ? std::span<const std::uint8_t>(bytes, size) : std::span<const std::uint8_t>();
}

SqliteConnection::SqliteConnection(const std::filesystem::path& file) {
  opened_ =
      sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  if (db_) {
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, busyMilliseconds);
  }
}

SqliteConnection::~SqliteConnection() {
  // Every statement is finalised by its owner first; closing the last
  // connection folds the write-ahead log back and removes it.
  sqlite3_close(db_);
}

int SqliteConnection::execute(std::string_view sql) {
  return sqlite3_exec(db_, std::string(sql).c_str(), nullptr, nullptr, nullptr);
}

int SqliteConnection::queryText(std::string_view sql, std::string& result) {
  SqliteStatement statement(db_, sql);
  if (statement.prepared() != SQLITE_OK) return statement.prepared();
  const int code = statement.step();
  if (code == SQLITE_ROW) {
    result = std::string(statement.columnText(0));
    return SQLITE_OK;
  }
  return code == SQLITE_DONE ? SQLITE_OK : code;
}

std::unique_ptr<SqliteStatement> SqliteConnection::prepare(std::string_view sql) const {
  return std::make_unique<SqliteStatement>(db_, sql);
}

std::string SqliteConnection::cause(int code) const {
  std::string text = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(code);
  // SQLite keeps the system's errno only for these two.
  const int primary = code & 0xff;
  if (db_ && (primary == SQLITE_CANTOPEN || primary == SQLITE_IOERR)) {
    if (const int error = sqlite3_system_errno(db_)) {
      text += " (";
      text += std::strerror(error);
      text += ")";
    }
  }
  return text;
}

bool SqliteConnection::isDamage(int code) {
  const int primary = code & 0xff;
  return primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT;
}

}  // namespace sodam
