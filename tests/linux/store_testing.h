#pragma once

// Opens the Linux settings store in a test, and looks into and tampers with
// its database the way the sqlite3 tool would, behind the store's back.

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "linux/sqlite_defaults.h"

namespace sodam::testing {

// The store, or nothing and a failed test.
inline std::unique_ptr<SqliteDefaults> openStore(const std::filesystem::path& dir) {
  auto opened = SqliteDefaults::open(dir);
  if (auto* failure = std::get_if<StoreFailure>(&opened)) {
    ADD_FAILURE() << failure->describe();
    return nullptr;
  }
  return std::move(std::get<std::unique_ptr<SqliteDefaults>>(opened));
}

// Every row of a query, each as its columns joined by '|', NULL as "".
inline std::vector<std::string> sqliteRows(const std::filesystem::path& db,
                                           const std::string& sql) {
  std::vector<std::string> rows;
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(db.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    sqlite3_busy_timeout(handle, 5000);
    auto collect = [](void* into, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i)
        row.append(i ? "|" : "").append(values[i] ? values[i] : "");
      static_cast<std::vector<std::string>*>(into)->push_back(row);
      return 0;
    };
    if (sqlite3_exec(handle, sql.c_str(), collect, &rows, nullptr) != SQLITE_OK) {
      rows.push_back(std::string("error: ") + sqlite3_errmsg(handle));
    }
  }
  sqlite3_close(handle);
  return rows;
}

inline std::string sqliteValue(const std::filesystem::path& db, const std::string& sql) {
  auto rows = sqliteRows(db, sql);
  return rows.empty() ? std::string() : rows.front();
}

}  // namespace sodam::testing
