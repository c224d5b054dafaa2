#include "linux/record_store.h"

#include <cerrno>
#include <cstring>
#include <ostream>

namespace sodam {

RecordStore RecordStore::open(const std::optional<std::string>& dataDir, bool create) {
  if (dataDir) return open(std::filesystem::path(*dataDir), create);
  if (auto directory = DataDirectory::standard()) return open(*directory, create);
  RecordStore store;
  store.state = State::nowhere;
  return store;
}

int RecordStore::complain(const std::string& command, std::ostream& err) const {
  if (state == State::nowhere) {
    err << "sodamjari " << command
        << ": no records folder: set HOME or XDG_CONFIG_HOME, or give --data-dir\n";
    return 2;
  }
  if (state != State::unreadable && state != State::busy) return 0;
  err << "sodamjari " << command << ": " << problem << "\n";
  return state == State::busy ? 2 : 1;
}

RecordStore RecordStore::open(const std::filesystem::path& directory, bool create) {
  RecordStore store;
  const std::filesystem::path database = directory / SqliteDefaults::fileName;
  std::error_code error;
  const bool exists = std::filesystem::exists(database, error);
  if (error) {
    store.state = State::unreadable;
    store.problem = "기록을 읽을 수 없어요: " + database.string() + " (" + error.message() + ")";
    return store;
  }
  if (!exists && !create) return store;
  auto opened = SqliteDefaults::open(directory);
  if (auto* failure = std::get_if<StoreFailure>(&opened)) {
    const bool busy = failure->kind == StoreFailure::Kind::busy;
    store.state = busy ? State::busy : State::unreadable;
    store.problem = busy ? "이미 다른 소담자리가 이 기록을 쓰고 있어요: " + directory.string()
                         : "기록을 읽을 수 없어요: " + failure->describe();
    return store;
  }
  store.defaults = std::move(std::get<std::unique_ptr<SqliteDefaults>>(opened));
  // A damaged database was moved aside and a new one begun: what was in it
  // can't be shown, and the user should know where it went.
  if (auto aside = store.defaults->keptAside()) {
    store.state = State::unreadable;
    store.problem = "기록 파일이 망가져 읽을 수 없어요: " + database.string() +
                    " · 망가진 파일은 " + aside->string() + "에 옮겨 두었어요";
    store.defaults.reset();
    return store;
  }
  store.state = State::ready;
  return store;
}

std::optional<Date> newestRecord(const PostureLog& log, const std::vector<WorkDay>& days) {
  std::optional<Date> newest;
  if (!log.entries().empty()) newest = log.entries().back().t;
  if (!days.empty()) {
    if (auto last = days.back().last(); last && (!newest || *newest < *last)) newest = last;
  }
  return newest;
}

int complainAbout(const StoreFailure& failure, const std::string& command, std::ostream& err) {
  const std::string prefix = "sodamjari " + command + ": ";
  if (failure.kind == StoreFailure::Kind::busy) {
    const std::string dir = failure.path.string();
    err << prefix << "이미 다른 소담자리가 이 기록을 쓰고 있어요: " << dir << "\n"
        << prefix << "another sodamjari is using " << dir << "\n";
    return 2;
  }
  err << prefix << "cannot use the settings store: " << failure.describe() << "\n";
  return 1;
}

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

}  // namespace sodam
