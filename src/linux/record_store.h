#pragma once

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/sqlite_defaults.h"
#include "posture/posture_log.h"
#include "support/calendar.h"
#include "worklife/work_life.h"

namespace sodam {

// The settings and records folder as the commands that read it open it:
// `report` and `settings`.
struct RecordStore {
  enum class State {
    ready,       // `defaults` holds the store
    empty,       // no store in the folder yet; nothing was created
    unreadable,  // `problem` says why, in the user's words
    busy,        // another run holds the folder; `problem` says so
    nowhere,     // no folder was given and none could be found
  };

  State state = State::empty;
  std::unique_ptr<SqliteDefaults> defaults;
  std::string problem;

  // Opens the store of the folder given with --data-dir, else of the
  // default folder. A folder without one is left untouched and reads as
  // empty, unless `create` asks for a store to write into.
  static RecordStore open(const std::optional<std::string>& dataDir, bool create);
  static RecordStore open(const std::filesystem::path& directory, bool create);

  // Tells `err` why the store can't be used and gives the exit status: 2
  // without a folder or when another run holds it, 1 for a store that can't
  // be read, 0 when it can.
  int complain(const std::string& command, std::ostream& err) const;
};

// Tells `err` why a command that writes can't open its store, and gives the
// exit status: 2 when another run holds the folder, else 1.
int complainAbout(const StoreFailure& failure, const std::string& command, std::ostream& err);

// The calendar of the machine's time zone, UTC when it can't be read.
Calendar localCalendar();

// The newest moment any record speaks of: a simulated week may run ahead of
// the machine's clock, and the commands then read the records as of then.
std::optional<Date> newestRecord(const PostureLog& log, const std::vector<WorkDay>& days);

}  // namespace sodam
