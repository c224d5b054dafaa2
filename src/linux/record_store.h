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

// The settings and records folder as every command opens it: one store,
// held locked while the command runs.
struct RecordStore {
  enum class State {
    ready,       // `defaults` holds the store
    empty,       // no store in the folder yet; nothing was created
    unreadable,  // `problem` says why, in the user's words
    busy,        // another run holds the folder; `problem` says so
    nowhere,     // no folder was given and none could be found
  };

  State state = State::empty;
  // The folder opened; empty when none was found.
  std::filesystem::path directory;
  std::unique_ptr<SqliteDefaults> defaults;
  std::string problem;
  // What went wrong, in the terms of the English line beside `problem`.
  std::optional<StoreFailure> failure;
  // Where a damaged database went when a command that writes began anew.
  std::optional<std::filesystem::path> movedAside;

  // Opens the store of the folder given with --data-dir, else of the
  // default folder. A folder without one is left untouched and reads as
  // empty, unless `create` asks for a store to write into. Only a command
  // that writes goes on past a damaged database, in a new one.
  static RecordStore open(const std::optional<std::string>& dataDir, bool create);
  static RecordStore open(const std::filesystem::path& directory, bool create);

  // Tells `err` why the store can't be used and gives the exit status: 2
  // without a folder or when another run holds it, 1 for a store that can't
  // be read, 0 when it can (after saying where a damaged database went).
  int complain(const std::string& command, std::ostream& err) const;
};

// Takes the folder named after "--data-dir" at args[i], stepping past it;
// the problem with it, if any.
std::optional<std::string> takeDataDir(const std::vector<std::string>& args, std::size_t& i,
                                       std::optional<std::string>& dataDir);

// The arguments of a command that takes only "--data-dir DIR"; the problem
// with them, if any.
std::optional<std::string> readDataDirOnly(const std::vector<std::string>& args,
                                           std::optional<std::string>& dataDir);

// The calendar of the machine's time zone, UTC when it can't be read.
Calendar localCalendar();

// The newest moment any record speaks of: a simulated week may run ahead of
// the machine's clock, and the commands then read the records as of then.
std::optional<Date> newestRecord(const PostureLog& log, const std::vector<WorkDay>& days);

}  // namespace sodam
