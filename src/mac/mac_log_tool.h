#pragma once

// The helper's command loop calls it; the stream's output comes on the
// child's reader thread.

#include <memory>
#include <string>

#include "camerawatch/unified_log.h"
#include "posix/child_process.h"

namespace sodam {

// The system's log tool, /usr/bin/log, run as a child of the camera-log
// helper at the system's utility priority, its errors to the null device.
class MacLogTool final : public LogTool {
 public:
  static constexpr const char* path = "/usr/bin/log";

  ~MacLogTool() override;

  std::string show(const std::string& start, const std::string& end,
                   const std::string& predicate) override;
  bool startStream(const std::string& predicate, ChunkHandler onChunk) override;
  void stopStream() override;

 private:
  std::unique_ptr<ChildProcess> stream_;
};

// The camera-log helper's whole run on the Mac: reads the system log and
// answers on standard input and output until the input ends, then exits.
[[noreturn]] void runMacLogHelper();

}  // namespace sodam
