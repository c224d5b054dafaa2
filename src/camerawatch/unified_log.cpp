#include "camerawatch/unified_log.h"

#include "camerawatch/line_buffer.h"

namespace sodam {

UnifiedLog::~UnifiedLog() {
  stopStream();
}

std::vector<LogEntry> UnifiedLog::read(double from, double to, std::string_view predicate) {
  const std::string output =
      tool_.show(logWindowStamp(from, zone_), logWindowStamp(to, zone_), std::string(predicate));
  return parseLogOutput(output);
}

std::vector<CameraRecord> UnifiedLog::clients(double from, double to) {
  return clientRecords(read(from, to, cameraStackPredicate), self_);
}

std::vector<CameraRecord> UnifiedLog::requests(double from, double to) {
  return privacyRecords(read(from, to, permissionPredicate), self_);
}

std::optional<IndicatorUpdate> UnifiedLog::indicator(double from, double to) {
  return lastIndicator(read(from, to, indicatorPredicate));
}

void UnifiedLog::startStream(StreamHandler handler) {
  std::lock_guard lock(streamLock_);
  if (streaming_) return;
  auto lines = std::make_shared<LineBuffer>();
  const Clock& clock = clock_;
  auto onChunk = [lines, handler = std::move(handler), &clock](std::string_view bytes) {
    lines->append(bytes);
    while (auto line = lines->next()) {
      if (auto update = streamedIndicator(*line, clock.now().unixSeconds())) handler(*update);
    }
  };
  // A stream that ends by itself stays recorded until it is stopped.
  streaming_ = tool_.startStream(std::string(indicatorPredicate), std::move(onChunk));
}

void UnifiedLog::stopStream() {
  std::lock_guard lock(streamLock_);
  tool_.stopStream();
  streaming_ = false;
}

}  // namespace sodam
