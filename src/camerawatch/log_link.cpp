#include "camerawatch/log_link.h"

#include "camerawatch/log_helper.h"

namespace sodam {

namespace {

std::string window(char letter, Date from, Date to) {
  return std::string(1, letter) + " " + decimalSeconds(from.unixSeconds()) + " " +
         decimalSeconds(to.unixSeconds());
}

}  // namespace

std::unique_ptr<LogLink> LogLink::spawn(HelperLauncher& launcher, Scheduler& scheduler) {
  auto channel = launcher.launch(LogHelper::flag);
  if (!channel) return nullptr;
  return std::make_unique<LogLink>(std::move(channel), scheduler);
}

LogLink::LogLink(std::unique_ptr<HelperChannel> channel, Scheduler& scheduler)
    : channel_(std::move(channel)), scheduler_(scheduler), self_(lifeToken(this)) {
  // The reader's thread only copies the bytes and hops to the main thread.
  channel_->startReading([weak = std::weak_ptr<LogLink*>(self_), &scheduler](std::string bytes) {
    scheduler.post([weak, bytes = std::move(bytes)] {
      if (auto alive = weak.lock(); alive && *alive) (*alive)->received(bytes);
    });
  });
}

LogLink::~LogLink() {
  *self_ = nullptr;
  channel_->stopReading();
}

void LogLink::query(Date from, Date to, bool clients, RecordsDone done) {
  send(window(clients ? 'C' : 'Q', from, to),
       [done = std::move(done)](std::vector<std::string> lines) {
         std::vector<CameraRecord> records;
         for (const auto& text : lines) {
           if (auto record = decodeCameraRecord(text)) records.push_back(std::move(*record));
         }
         done(std::move(records));
       });
}

void LogLink::indicator(Date from, Date to, UpdateDone done) {
  send(window('I', from, to), [done = std::move(done)](std::vector<std::string> lines) {
    std::optional<IndicatorUpdate> last;
    for (const auto& text : lines) {
      if (auto update = decodeIndicatorUpdate(text)) last = std::move(update);
    }
    done(std::move(last));
  });
}

void LogLink::stream(bool on) {
  // The helper answers it with a terminator like any other command.
  send(on ? "S 1" : "S 0", [](std::vector<std::string>) {});
}

void LogLink::send(const std::string& command, Answer answer) {
  if (!alive_) {
    answer({});
    return;
  }
  pending_.push_back(std::move(answer));
  if (!channel_->write(command + "\n")) {
    alive_ = false;
    flush();
  }
}

void LogLink::received(std::string_view bytes) {
  if (bytes.empty()) {
    alive_ = false;
    channel_->stopReading();
    flush();
    return;
  }
  buffer_.append(bytes);
  while (auto text = buffer_.next())
    line(std::move(*text));
}

void LogLink::line(std::string text) {
  if (text == LogHelper::terminator) {
    auto lines = std::move(current_);
    current_.clear();
    if (pending_.empty()) return;
    auto answer = std::move(pending_.front());
    pending_.pop_front();
    answer(std::move(lines));
    return;
  }
  if (!text.empty() && text.front() == LogHelper::streamMark) {
    // A stream line never belongs to an answer, wherever it falls.
    auto update = decodeIndicatorUpdate(std::string_view(text).substr(1));
    if (update && onIndicator) onIndicator(*update);
    return;
  }
  current_.push_back(std::move(text));
}

void LogLink::flush() {
  auto waiting = std::move(pending_);
  pending_.clear();
  for (auto& answer : waiting)
    answer({});
}

}  // namespace sodam
