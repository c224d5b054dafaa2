#pragma once

#include <string>

#include "platform/guard.h"

namespace sodam {

// The running process as /proc and the loader's environment show it. Linux
// signs no code, so there is no signature to check.
class LinuxProcessInspector final : public ProcessInspector {
 public:
  // `statusPath` is the process's status file; tests give one of their own.
  explicit LinuxProcessInspector(std::string statusPath = "/proc/self/status")
      : statusPath_(std::move(statusPath)) {}

  bool traced() const override;
  std::string injectedLibraries() const override;
  std::optional<bool> signatureValid() const override { return std::nullopt; }

  // The tracer's process id from the text of a status file; 0 for none, and
  // for a file without the line.
  static long tracerPid(const std::string& status);

 private:
  std::string statusPath_;
};

}  // namespace sodam
