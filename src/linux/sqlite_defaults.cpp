#include "linux/sqlite_defaults.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include <nlohmann/json.hpp>

#include "linux/data_pieces.h"
#include "linux/sqlite_connection.h"

namespace sodam {

namespace {

using stored::Column;
using stored::Row;

constexpr const char* schema = R"(
CREATE TABLE IF NOT EXISTS setting(key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value);
CREATE TABLE IF NOT EXISTS piece(key TEXT NOT NULL, digest INTEGER NOT NULL, bytes BLOB NOT NULL,
                                 PRIMARY KEY(key, digest));
CREATE TABLE IF NOT EXISTS kept_aside(key TEXT NOT NULL, type TEXT NOT NULL, value,
                                      kept_at TEXT NOT NULL);
)";

constexpr int ok = SQLITE_OK;

void bindColumn(SqliteStatement& statement, int index, const Column& value) {
  if (auto v = std::get_if<std::int64_t>(&value)) statement.bind(index, *v);
  if (auto v = std::get_if<double>(&value)) statement.bind(index, *v);
  if (auto v = std::get_if<std::string>(&value)) statement.bindText(index, *v);
  if (auto v = std::get_if<Bytes>(&value)) statement.bindBlob(index, *v);
}

Column columnOf(const SqliteStatement& statement, int index) {
  switch (statement.columnType(index)) {
    case SQLITE_INTEGER:
      return statement.columnInteger(index);
    case SQLITE_FLOAT:
      return statement.columnReal(index);
    case SQLITE_TEXT:
      return std::string(statement.columnText(index));
    case SQLITE_BLOB: {
      auto bytes = statement.columnBlob(index);
      return Bytes(bytes.begin(), bytes.end());
    }
    default:
      return std::monostate{};
  }
}

// The finished statement's code: SQLITE_OK for a run to the end.
int finished(int code) {
  return code == SQLITE_DONE ? ok : code;
}

// A pieced value's row lists its pieces' digests, eight bytes each, least
// significant first.
Bytes listOf(const std::vector<std::uint64_t>& digests) {
  Bytes list;
  list.reserve(digests.size() * 8);
  for (std::uint64_t digest : digests) {
    for (int shift = 0; shift < 64; shift += 8)
      list.push_back(static_cast<std::uint8_t>(digest >> shift));
  }
  return list;
}

std::optional<std::vector<std::uint64_t>> digestsOf(const Row& row) {
  auto list = std::get_if<Bytes>(&row.value);
  if (row.type != stored::dataPieces || !list || list->size() % 8 != 0) return std::nullopt;
  std::vector<std::uint64_t> digests;
  for (std::size_t at = 0; at < list->size(); at += 8) {
    std::uint64_t digest = 0;
    for (int i = 7; i >= 0; --i)
      digest = (digest << 8) | (*list)[at + static_cast<std::size_t>(i)];
    digests.push_back(digest);
  }
  return digests;
}

bool isJson(const Bytes& bytes) {
  return nlohmann::json::accept(bytes.begin(), bytes.end());
}

}  // namespace

struct SqliteDefaults::Statements {
  explicit Statements(const SqliteConnection& db)
      : readRow(db.prepare("SELECT type, value FROM setting WHERE key = ?1")),
        readPieces(db.prepare("SELECT digest, bytes FROM piece WHERE key = ?1")),
        writeRow(db.prepare("INSERT OR REPLACE INTO setting(key, type, value) VALUES(?1, ?2, ?3)")),
        removeRow(db.prepare("DELETE FROM setting WHERE key = ?1")),
        writePiece(
            db.prepare("INSERT OR IGNORE INTO piece(key, digest, bytes) VALUES(?1, ?2, ?3)")),
        removePiece(db.prepare("DELETE FROM piece WHERE key = ?1 AND digest = ?2")),
        removePieces(db.prepare("DELETE FROM piece WHERE key = ?1")),
        keepAside(db.prepare("INSERT INTO kept_aside(key, type, value, kept_at) "
                             "VALUES(?1, ?2, ?3, datetime('now'))")) {}

  int prepared() const {
    for (const auto* statement : {&readRow, &readPieces, &writeRow, &removeRow, &writePiece,
                                  &removePiece, &removePieces, &keepAside}) {
      if ((*statement)->prepared() != ok) return (*statement)->prepared();
    }
    return ok;
  }

  std::unique_ptr<SqliteStatement> readRow, readPieces, writeRow, removeRow, writePiece,
      removePiece, removePieces, keepAside;
};

SqliteDefaults::SqliteDefaults(DataDirectory directory) : directory_(std::move(directory)) {}

SqliteDefaults::~SqliteDefaults() {
  statements_.reset();
  db_.reset();
}

std::variant<std::unique_ptr<SqliteDefaults>, StoreFailure> SqliteDefaults::open(
    const std::filesystem::path& directory) {
  auto claimed = DataDirectory::claim(directory);
  if (auto* failure = std::get_if<StoreFailure>(&claimed)) return *failure;
  std::unique_ptr<SqliteDefaults> store(
      new SqliteDefaults(std::get<DataDirectory>(std::move(claimed))));
  std::string cause;
  int code = store->connect(cause);
  if (SqliteConnection::isDamage(code)) {
    if (auto failure = store->moveDamagedAside()) return *failure;
    cause.clear();
    code = store->connect(cause);
  }
  if (code != ok) return StoreFailure{StoreFailure::Kind::unusable, store->path(), cause};
  return store;
}

int SqliteDefaults::connect(std::string& cause) {
  statements_.reset();
  // Records of a person's posture are theirs alone; SQLite gives its
  // journal files the database file's permissions.
  // Creating it here also names the true cause when the folder refuses.
  if (int fd = ::open(path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); fd >= 0) {
    ::close(fd);
  } else if (errno != EEXIST) {
    cause = std::strerror(errno);
    return SQLITE_CANTOPEN;
  }
  db_ = std::make_unique<SqliteConnection>(path());
  int code = db_->opened();
  std::string answer;
  if (code == ok) code = db_->queryText("PRAGMA journal_mode=WAL", answer);
  if (code == ok && answer != "wal") {
    cause = "the database cannot keep a write-ahead log here (journal mode \"" + answer + "\")";
    return SQLITE_CANTOPEN;
  }
  // A commit is safe from a crash of the program at once, and from a crash
  // of the machine at the next checkpoint; the database is never damaged.
  if (code == ok) code = db_->execute("PRAGMA synchronous=NORMAL");
  // Scratch space stays in memory: a confined run may write only in its
  // data folder, and the records are small.
  if (code == ok) code = db_->execute("PRAGMA temp_store=MEMORY");
  if (code == ok) code = db_->queryText("PRAGMA quick_check", answer);
  if (code == ok && answer != "ok") {
    cause = "the database is damaged: " + answer;
    return SQLITE_CORRUPT;
  }
  if (code == ok) code = db_->execute(schema);
  if (code == ok) {
    statements_ = std::make_unique<Statements>(*db_);
    code = statements_->prepared();
  }
  if (code != ok) cause = db_->cause(code);
  return code;
}

std::optional<StoreFailure> SqliteDefaults::moveDamagedAside() {
  statements_.reset();
  db_.reset();
  namespace fs = std::filesystem;
  const fs::path file = path();
  const fs::path log = file.string() + "-wal";
  for (int number = 1; number < 1000; ++number) {
    const fs::path target = file.string() + ".damaged-" + std::to_string(number);
    std::error_code error;
    if (fs::exists(target, error) || fs::exists(target.string() + "-wal", error)) continue;
    auto failure = [&] {
      return StoreFailure{StoreFailure::Kind::unusable, file, error.message()};
    };
    fs::rename(file, target, error);
    if (error) return failure();
    // The log belongs to the damaged file: a new database must not replay it.
    if (fs::exists(log, error)) fs::rename(log, target.string() + "-wal", error);
    if (!error) fs::remove(file.string() + "-shm", error);
    if (error) return failure();
    keptAside_ = target;
    return std::nullopt;
  }
  return StoreFailure{StoreFailure::Kind::unusable, file, "no free name to keep the damaged copy"};
}

std::optional<DefaultsValue> SqliteDefaults::object(std::string_view key) const {
  News news;
  std::optional<DefaultsValue> value;
  {
    std::lock_guard guard(mutex_);
    if (auto found = unsaved_.find(key); found != unsaved_.end()) return found->second;
    const std::string name(key);
    std::optional<Row> row;
    int code = readRow(name, row);
    if (code == ok && row) value = decode(name, *row, code);
    if (code != ok) failed(code, news);
  }
  tell(std::move(news));
  return value;
}

void SqliteDefaults::set(std::string_view key, DefaultsValue value) {
  if (!stored::representable(value)) return change(key, std::nullopt);
  change(key, std::move(value));
}

void SqliteDefaults::remove(std::string_view key) {
  change(key, std::nullopt);
}

std::optional<StoreFailure> SqliteDefaults::firstFailure() const {
  std::lock_guard guard(mutex_);
  return firstFailure_;
}

std::size_t SqliteDefaults::unsavedChanges() const {
  std::lock_guard guard(mutex_);
  return unsaved_.size();
}

std::optional<std::filesystem::path> SqliteDefaults::keptAside() const {
  std::lock_guard guard(mutex_);
  return keptAside_;
}

void SqliteDefaults::change(std::string_view key, Change value) {
  News news;
  {
    std::lock_guard guard(mutex_);
    unsaved_.insert_or_assign(std::string(key), std::move(value));
    writeUnsaved(news);
  }
  tell(std::move(news));
}

// Each change not yet stored goes out in a transaction of its own, so that
// one that cannot be written (a large record on a full disk) holds back no
// other. The store counts as failing while any change waits.
void SqliteDefaults::writeUnsaved(News& news) {
  for (auto entry = unsaved_.begin(); entry != unsaved_.end();) {
    bool damaged = false;
    const int code = writeOne(entry->first, entry->second, damaged);
    if (code != ok) {
      failed(code, news);
      ++entry;
      continue;
    }
    if (damaged) news.keptKeys.push_back(entry->first);
    sound_.insert(entry->first);
    entry = unsaved_.erase(entry);
  }
  if (unsaved_.empty()) failing_ = false;
}

int SqliteDefaults::writeOne(const std::string& key, const Change& value, bool& damaged) {
  int code = db_->execute("BEGIN IMMEDIATE");
  if (code == ok) code = keepAsideIfDamaged(key, damaged);
  if (code == ok) code = writeChange(key, value);
  if (code == ok) code = db_->execute("COMMIT");
  if (code == ok) return ok;
  // The cause is read before the rollback resets it.
  const std::string cause = db_->cause(code);
  db_->execute("ROLLBACK");
  damaged = false;
  lastCause_ = cause;
  return code;
}

int SqliteDefaults::writeChange(const std::string& key, const Change& value) {
  if (!value) return removeRow(key);
  if (auto bytes = std::get_if<Bytes>(&*value); bytes && bytes->size() > pieces::largest) {
    return writePieces(key, *bytes);
  }
  int code = finished(statements_->removePieces->reset().bindText(1, key).step());
  auto row = stored::rowOf(*value);
  return code == ok ? writeRow(key, *row) : code;
}

int SqliteDefaults::writeRow(const std::string& key, const Row& row) {
  auto& statement = statements_->writeRow->reset().bindText(1, key).bindText(2, row.type);
  bindColumn(statement, 3, row.value);
  return finished(statement.step());
}

// Writes the pieces the stored value lacks and drops those it no longer has.
// A piece already there costs a look-up in the index, not a write.
int SqliteDefaults::writePieces(const std::string& key, const Bytes& bytes) {
  std::optional<Row> old;
  int code = readRow(key, old);
  auto had = old ? digestsOf(*old) : std::nullopt;
  if (code == ok && !had)
    code = finished(statements_->removePieces->reset().bindText(1, key).step());
  std::set<std::uint64_t> before;
  if (had) before.insert(had->begin(), had->end());
  std::vector<std::uint64_t> order;
  std::set<std::uint64_t> now;
  std::size_t start = 0;
  for (std::size_t end : pieces::cuts(bytes)) {
    const std::span<const std::uint8_t> piece(bytes.data() + start, end - start);
    start = end;
    order.push_back(pieces::digest(piece));
    if (code != ok || !now.insert(order.back()).second) continue;
    code = finished(statements_->writePiece->reset()
                        .bindText(1, key)
                        .bind(2, static_cast<std::int64_t>(order.back()))
                        .bindBlob(3, piece)
                        .step());
  }
  for (std::uint64_t digest : before) {
    if (code != ok || now.count(digest)) continue;
    code = finished(statements_->removePiece->reset()
                        .bindText(1, key)
                        .bind(2, static_cast<std::int64_t>(digest))
                        .step());
  }
  return code == ok ? writeRow(key, Row{std::string(stored::dataPieces), listOf(order)}) : code;
}

int SqliteDefaults::removeRow(const std::string& key) {
  int code = finished(statements_->removeRow->reset().bindText(1, key).step());
  if (code == ok) code = finished(statements_->removePieces->reset().bindText(1, key).step());
  return code;
}

// A stored value this object did not write, and that does not read, is
// copied aside in the same transaction that overwrites it. Data values are
// JSON records: data that is not JSON was damaged outside this program.
int SqliteDefaults::keepAsideIfDamaged(const std::string& key, bool& kept) {
  kept = false;
  if (sound_.count(key)) return ok;
  std::optional<Row> row;
  int code = readRow(key, row);
  if (code != ok || !row) return code;
  auto value = decode(key, *row, code);
  if (code != ok) return code;
  const Bytes* bytes = value ? std::get_if<Bytes>(&*value) : nullptr;
  if (value && (!bytes || isJson(*bytes))) return ok;
  Row copy = *row;
  if (row->type == stored::dataPieces) {
    // What the pieces still hold is kept as plain data.
    bool whole = false;
    Bytes found;
    code = assemble(key, *row, found, whole);
    copy = Row{"data", std::move(found)};
  }
  if (code != ok) return code;
  auto& statement = statements_->keepAside->reset().bindText(1, key).bindText(2, copy.type);
  bindColumn(statement, 3, copy.value);
  code = finished(statement.step());
  kept = code == ok;
  return code;
}

int SqliteDefaults::readRow(const std::string& key, std::optional<Row>& row) const {
  auto& statement = statements_->readRow->reset().bindText(1, key);
  const int code = statement.step();
  if (code == SQLITE_ROW) row = Row{std::string(statement.columnText(0)), columnOf(statement, 1)};
  statement.reset();
  return code == SQLITE_ROW ? ok : finished(code);
}

// The bytes of a pieced value, as far as its pieces are there.
int SqliteDefaults::assemble(const std::string& key, const Row& row, Bytes& bytes,
                             bool& whole) const {
  auto order = digestsOf(row);
  auto& statement = statements_->readPieces->reset().bindText(1, key);
  std::map<std::uint64_t, Bytes> found;
  int code = SQLITE_ROW;
  while ((code = statement.step()) == SQLITE_ROW) {
    auto piece = statement.columnBlob(1);
    found.emplace(static_cast<std::uint64_t>(statement.columnInteger(0)),
                  Bytes(piece.begin(), piece.end()));
  }
  statement.reset();
  whole = order.has_value();
  for (std::uint64_t digest : order ? *order : std::vector<std::uint64_t>{}) {
    auto piece = found.find(digest);
    if (piece == found.end()) {
      whole = false;
      continue;
    }
    bytes.insert(bytes.end(), piece->second.begin(), piece->second.end());
  }
  return finished(code);
}

std::optional<DefaultsValue> SqliteDefaults::decode(const std::string& key, const Row& row,
                                                    int& code) const {
  code = ok;
  if (row.type != stored::dataPieces) return stored::valueOf(row);
  Bytes bytes;
  bool whole = false;
  code = assemble(key, row, bytes, whole);
  if (code != ok || !whole) return std::nullopt;
  return bytes;
}

void SqliteDefaults::failed(int code, News& news) const {
  StoreFailure failure{StoreFailure::Kind::unusable, path(),
                       lastCause_.empty() ? db_->cause(code) : std::exchange(lastCause_, {})};
  if (!firstFailure_) firstFailure_ = failure;
  if (!failing_) news.failure = std::move(failure);
  failing_ = true;
}

void SqliteDefaults::tell(News news) const {
  if (news.failure && onFailure) onFailure(*news.failure);
  if (onValueKeptAside) {
    for (const auto& key : news.keptKeys)
      onValueKeptAside(key);
  }
}

}  // namespace sodam
