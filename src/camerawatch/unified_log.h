#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "camerawatch/camera_findings.h"
#include "camerawatch/camera_sources.h"
#include "support/clock.h"
#include "support/time_zone.h"

namespace sodam {

// The system's log tool, run as a child of the helper. Implemented by the
// Mac shell over `/usr/bin/log`; any thread.
class LogTool {
 public:
  using ChunkHandler = std::function<void(std::string_view bytes)>;

  virtual ~LogTool() = default;
  // `show` between two local "yyyy-MM-dd HH:mm:ss" stamps in the tool's JSON
  // style, filtered by the predicate: its whole output, read to the end
  // before the child is waited for; empty when it could not be launched.
  virtual std::string show(const std::string& start, const std::string& end,
                           const std::string& predicate) = 0;
  // `stream` in the JSON style, filtered by the predicate: its output as it
  // comes, on a reader thread of its own until the pipe ends; false when it
  // could not be launched.
  virtual bool startStream(const std::string& predicate, ChunkHandler onChunk) = 0;
  // Terminates the stream child, if one runs, and waits for its reader.
  virtual void stopStream() = 0;
};

// The helper's sources read from the system log: the camera stack, the
// permission daemon and the menu-bar indicator, each through its predicate.
class UnifiedLog final : public CameraSources {
 public:
  static constexpr std::string_view cameraStackPredicate =
      R"(subsystem == "com.apple.cmio" AND eventMessage CONTAINS "CMIO_DAL_System.cpp")";
  static constexpr std::string_view permissionPredicate =
      R"(process == "tccd" AND eventMessage BEGINSWITH "AUTHREQ_")";
  static constexpr std::string_view indicatorPredicate =
      R"(subsystem == "com.apple.controlcenter" AND category == "sensor-indicators" AND eventMessage BEGINSWITH "Sorted active attributions")";

  // `zone` is the local one the tool reads its window in; the clock stamps
  // the stream's lines.
  UnifiedLog(LogTool& tool, HelperSelf self, TimeZone zone, const Clock& clock)
      : tool_(tool), self_(std::move(self)), zone_(std::move(zone)), clock_(clock) {}
  ~UnifiedLog() override;

  std::vector<CameraRecord> clients(double from, double to) override;
  std::vector<CameraRecord> requests(double from, double to) override;
  std::optional<IndicatorUpdate> indicator(double from, double to) override;
  void startStream(StreamHandler handler) override;
  void stopStream() override;

 private:
  std::vector<LogEntry> read(double from, double to, std::string_view predicate);

  LogTool& tool_;
  HelperSelf self_;
  TimeZone zone_;
  const Clock& clock_;
  std::mutex streamLock_;
  bool streaming_ = false;
};

}  // namespace sodam
