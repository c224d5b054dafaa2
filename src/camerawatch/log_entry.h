#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/time_zone.h"

namespace sodam {

// One line of the system log as the log tool prints it in its
// newline-delimited JSON style, reduced to what the camera watch reads.
struct LogEntry {
  double time = 0;  // seconds since 1970
  std::int64_t pid = 0;
  std::string path;     // the process's executable, or empty
  std::string process;  // the last component of `path`
  std::string message;

  bool operator==(const LogEntry&) const = default;
};

// One line of the log tool's output; nothing when it isn't a JSON object
// with a string "eventMessage" and a string "timestamp" that parses.
std::optional<LogEntry> parseLogLine(std::string_view line);

// Every entry of the tool's whole output, in order; empty pieces and
// unreadable lines are skipped.
std::vector<LogEntry> parseLogOutput(std::string_view output);

// A log timestamp, "yyyy-MM-dd HH:mm:ss.SSSSSS" and the zone as "+hhmm",
// "+hh:mm" or "Z", as seconds since 1970; nothing when it doesn't parse.
std::optional<double> parseLogTimestamp(std::string_view text);

// The log tool's window bound: "yyyy-MM-dd HH:mm:ss" in the local zone,
// whole seconds.
std::string logWindowStamp(double unixSeconds, const TimeZone& zone);

// The last component of a path.
std::string lastPathComponent(std::string_view path);

// The pieces of text between line feeds, without empty ones.
std::vector<std::string_view> splitLines(std::string_view text);

}  // namespace sodam
