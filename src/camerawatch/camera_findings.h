#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "camerawatch/camera_record.h"
#include "camerawatch/log_entry.h"

namespace sodam {

// Who the helper is, so that the program's own camera use is left out: the
// main process is the helper's parent, and both run the same executable.
struct HelperSelf {
  std::int64_t parentPid = 0;
  std::string ownPath;
  // Folders of the operating system's own programs, whose camera-stack
  // entries are the system's, not an application's. Each ends in "/".
  std::vector<std::string> systemFolders;
};

// The system folders of the Mac: its own programs and daemons.
std::vector<std::string> macSystemFolders();

// One client record per process, at its first entry, from the camera stack's
// entries in log order. Left out: the main process, this executable or an
// unknown path, the system's own programs, a process already recorded.
std::vector<CameraRecord> clientRecords(const std::vector<LogEntry>& entries,
                                        const HelperSelf& self);

// Permission records from the permission daemon's messages, in log order:
// one per request for the camera that was attributed to an application that
// is not this program.
std::vector<CameraRecord> privacyRecords(const std::vector<LogEntry>& entries,
                                         const HelperSelf& self);

// The last indicator entry as an update: its time and the users it names.
std::optional<IndicatorUpdate> lastIndicator(const std::vector<LogEntry>& entries);

// A line of the indicator's live stream: the present time and the users its
// message names; nothing when the line is no JSON object with a string
// "eventMessage", such as the tool's banner.
std::optional<IndicatorUpdate> streamedIndicator(std::string_view line, double now);

}  // namespace sodam
