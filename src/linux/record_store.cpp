#include "linux/record_store.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ostream>

namespace sodam {

RecordStore RecordStore::open(const std::optional<std::string>& dataDir, bool create) {
  if (dataDir) return open(std::filesystem::path(*dataDir), create);
  if (auto directory = FileDefaults::defaultDirectory()) return open(*directory, create);
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
  if (state != State::unreadable) return 0;
  err << "sodamjari " << command << ": " << problem << "\n";
  return 1;
}

RecordStore RecordStore::open(const std::filesystem::path& directory, bool create) {
  RecordStore store;
  const std::filesystem::path document = directory / FileDefaults::fileName;
  std::error_code error;
  const bool exists = std::filesystem::exists(document, error);
  if (error) {
    store.state = State::unreadable;
    store.problem = "기록을 읽을 수 없어요: " + document.string() + " (" + error.message() + ")";
    return store;
  }
  if (!exists && !create) return store;
  // A document the store can't read would be set aside as damaged; one
  // that can't even be opened is the user's to look at, so it stays put.
  if (exists && ::access(document.c_str(), R_OK) != 0) {
    store.state = State::unreadable;
    store.problem =
        "기록을 읽을 수 없어요: " + document.string() + " (" + std::strerror(errno) + ")";
    return store;
  }
  store.defaults = std::make_unique<FileDefaults>(directory);
  if (store.defaults->loadState() == FileDefaults::LoadState::damaged) {
    store.state = State::unreadable;
    store.problem = "기록 파일이 망가져 읽을 수 없어요: " + document.string();
    if (auto aside = store.defaults->keptAside()) {
      store.problem += " · 망가진 파일은 " + aside->string() + "에 옮겨 두었어요";
    }
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

Calendar localCalendar() {
  if (auto zone = TimeZone::load("/etc/localtime")) return Calendar(*zone);
  return Calendar(TimeZone::utc());
}

}  // namespace sodam
