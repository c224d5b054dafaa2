#include "linux/record_store.h"

#include <ostream>

#include "support/utf8.h"

namespace sodam {

RecordStore RecordStore::open(const std::optional<std::string>& dataDir, bool create) {
  if (dataDir) return open(std::filesystem::path(*dataDir), create);
  if (auto directory = DataDirectory::standard()) return open(*directory, create);
  RecordStore store;
  store.state = State::nowhere;
  return store;
}

int RecordStore::complain(const std::string& command, std::ostream& err) const {
  const std::string prefix = "sodamjari " + command + ": ";
  switch (state) {
    case State::nowhere:
      err << prefix << "no records folder: set HOME or XDG_CONFIG_HOME, or give --data-dir\n";
      return 2;
    case State::busy:
      err << prefix << problem << "\n"
          << prefix << "another sodamjari is using " << failure->path.string() << "\n";
      return 2;
    case State::unreadable:
      err << prefix << problem << "\n"
          << prefix << "cannot use the settings store: " << failure->describe() << "\n";
      return 1;
    case State::ready:
    case State::empty:
      break;
  }
  if (movedAside) {
    err << prefix << "기록 파일이 손상되어 따로 두고 새로 시작해요: " << movedAside->string()
        << "\n";
  }
  return 0;
}

std::optional<std::string> takeDataDir(const std::vector<std::string>& args, std::size_t& i,
                                       std::optional<std::string>& dataDir) {
  if (i + 1 >= args.size()) return args[i] + " needs a value";
  if (args[i + 1].empty()) return args[i] + " needs a folder, not an empty name";
  dataDir = args[++i];
  return std::nullopt;
}

std::optional<std::string> readDataDirOnly(const std::vector<std::string>& args,
                                           std::optional<std::string>& dataDir) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] != "--data-dir") return "unknown option " + utf8::printable(args[i]);
    if (auto problem = takeDataDir(args, i, dataDir)) return problem;
  }
  return std::nullopt;
}

RecordStore RecordStore::open(const std::filesystem::path& directory, bool create) {
  RecordStore store;
  store.directory = directory;
  const std::filesystem::path database = directory / SqliteDefaults::fileName;
  std::error_code error;
  const bool exists = std::filesystem::exists(database, error);
  if (error) {
    store.state = State::unreadable;
    store.failure = StoreFailure{StoreFailure::Kind::unusable, database, error.message()};
    store.problem = "기록을 읽을 수 없어요: " + store.failure->describe();
    return store;
  }
  if (!exists && !create) return store;
  auto opened = SqliteDefaults::open(directory);
  if (auto* failure = std::get_if<StoreFailure>(&opened)) {
    const bool busy = failure->kind == StoreFailure::Kind::busy;
    store.state = busy ? State::busy : State::unreadable;
    store.failure = *failure;
    store.problem = busy ? "이미 다른 소담자리가 이 기록을 쓰고 있어요: " + directory.string()
                         : "기록을 열 수 없어요: " + failure->describe();
    return store;
  }
  store.defaults = std::move(std::get<std::unique_ptr<SqliteDefaults>>(opened));
  store.state = State::ready;
  store.movedAside = store.defaults->keptAside();
  // A damaged database was moved aside and a new one begun: what was in it
  // can't be shown, and the user should know where it went.
  if (store.movedAside && !create) {
    store.state = State::unreadable;
    store.failure = StoreFailure{StoreFailure::Kind::unusable, database,
                                 "damaged, moved to " + store.movedAside->string()};
    store.problem = "기록 파일이 망가져 읽을 수 없어요: " + database.string() +
                    " · 망가진 파일은 " + store.movedAside->string() + "에 옮겨 두었어요";
    store.defaults.reset();
  }
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

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

}  // namespace sodam
