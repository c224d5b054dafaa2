#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "camerawatch/camera_record.h"
#include "camerawatch/helper_channel.h"
#include "camerawatch/line_buffer.h"
#include "support/date.h"
#include "support/scheduler.h"
#include "support/weak_call.h"

namespace sodam {

// The main process's end of the pipe to the camera-log helper: calls become
// command lines, answers are matched to calls strictly in order, stream
// lines go to `onIndicator`. When the helper goes, every pending call is
// answered empty and the link stays dead for the rest of the process: it is
// never restarted. Main thread; the channel's reads hop here through the
// scheduler.
class LogLink {
 public:
  using RecordsDone = std::function<void(std::vector<CameraRecord>)>;
  using UpdateDone = std::function<void(std::optional<IndicatorUpdate>)>;

  // Starts the helper; nothing when it can't be launched. Called once, at
  // start, before the privacy lock forbids starting programs.
  static std::unique_ptr<LogLink> spawn(HelperLauncher& launcher, Scheduler& scheduler);

  LogLink(std::unique_ptr<HelperChannel> channel, Scheduler& scheduler);
  ~LogLink();
  LogLink(const LogLink&) = delete;
  LogLink& operator=(const LogLink&) = delete;

  // The helper is there; once false, every call answers empty at once.
  bool available() const { return alive_; }
  // Client records (when `clients`) and permission records of the window;
  // a line that doesn't decode is left out.
  void query(Date from, Date to, bool clients, RecordsDone done);
  // The window's last indicator update, if any.
  void indicator(Date from, Date to, UpdateDone done);
  void stream(bool on);

  // Each update of the indicator stream.
  std::function<void(const IndicatorUpdate&)> onIndicator;

  // What the helper wrote, in order of arrival; empty when it closed its side.
  void received(std::string_view bytes);

 private:
  using Answer = std::function<void(std::vector<std::string>)>;

  void send(const std::string& command, Answer answer);
  void line(std::string text);
  void flush();

  std::unique_ptr<HelperChannel> channel_;
  Scheduler& scheduler_;
  LineBuffer buffer_;
  std::vector<std::string> current_;
  std::deque<Answer> pending_;
  bool alive_ = true;
  LifeToken<LogLink> self_;
};

}  // namespace sodam
