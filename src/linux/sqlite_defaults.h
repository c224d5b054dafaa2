#pragma once

// The settings of the Linux program: one SQLite database, settings.db, in a
// folder that this object holds locked for its whole life. Any thread may
// call it: one mutex guards the object. Its callbacks fire on the calling
// thread, after the mutex is released.
//
// One row per key holds a type name and the value (see stored_value.h); each
// set or remove is one short transaction in write-ahead-log mode. Data larger
// than 64 KiB is kept in content-cut pieces (see data_pieces.h), so that a
// month-long log that gains a record rewrites kilobytes, not megabytes.
//
// Nothing is lost without a word. A write that fails stays in memory, reads
// see it, and it goes out again with the next write; `onFailure` hears of
// the first failure each time the store falls behind. A database that is
// damaged (not merely locked or unreadable) is moved aside at opening and a
// new one begun. A value that cannot be read is copied into the table
// kept_aside before it is overwritten.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "linux/data_directory.h"
#include "linux/stored_value.h"
#include "platform/defaults.h"

namespace sodam {

class SqliteConnection;
class SqliteStatement;

class SqliteDefaults final : public Defaults {
 public:
  static constexpr const char* fileName = "settings.db";

  // Claims the folder (creating it), opens or creates the database in it.
  static std::variant<std::unique_ptr<SqliteDefaults>, StoreFailure> open(
      const std::filesystem::path& directory);
  ~SqliteDefaults() override;
  SqliteDefaults(const SqliteDefaults&) = delete;
  SqliteDefaults& operator=(const SqliteDefaults&) = delete;

  std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  // The first failed write or read while nothing waited to be written; the
  // store is behind until every waiting change is written.
  std::function<void(const StoreFailure&)> onFailure;
  // A damaged value was copied aside before its key was written.
  std::function<void(const std::string& key)> onValueKeptAside;

  // The first failure in this object's life, if any.
  std::optional<StoreFailure> firstFailure() const;
  // Changes that live only in memory because their write failed.
  std::size_t unsavedChanges() const;
  // Where a damaged database was moved at opening.
  std::optional<std::filesystem::path> keptAside() const;
  std::filesystem::path path() const { return directory_.path() / fileName; }

 private:
  struct Statements;
  // What a write or read has to tell once the mutex is released.
  struct News {
    std::optional<StoreFailure> failure;
    std::vector<std::string> keptKeys;
  };
  using Change = std::optional<DefaultsValue>;  // nothing: removed

  explicit SqliteDefaults(DataDirectory directory);

  int connect(std::string& cause);
  std::optional<StoreFailure> moveDamagedAside();
  void change(std::string_view key, Change value);
  void writeUnsaved(News& news);
  int writeOne(const std::string& key, const Change& value, bool& damaged);
  int writeChange(const std::string& key, const Change& value);
  int writeRow(const std::string& key, const stored::Row& row);
  int writePieces(const std::string& key, const Bytes& bytes);
  int removeRow(const std::string& key);
  int keepAsideIfDamaged(const std::string& key, bool& kept);
  int readRow(const std::string& key, std::optional<stored::Row>& row) const;
  int assemble(const std::string& key, const stored::Row& row, Bytes& bytes, bool& whole) const;
  std::optional<DefaultsValue> decode(const std::string& key, const stored::Row& row,
                                      int& code) const;
  void failed(int code, News& news) const;
  void tell(News news) const;

  DataDirectory directory_;
  std::unique_ptr<SqliteConnection> db_;
  std::unique_ptr<Statements> statements_;
  std::optional<std::filesystem::path> keptAside_;

  mutable std::mutex mutex_;
  std::map<std::string, Change, std::less<>> unsaved_;
  // Keys whose stored row this object wrote or found sound.
  std::set<std::string, std::less<>> sound_;
  mutable std::optional<StoreFailure> firstFailure_;
  mutable bool failing_ = false;
  // Why the last transaction failed, read before its rollback.
  mutable std::string lastCause_;
};

}  // namespace sodam
