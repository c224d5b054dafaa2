#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "camerawatch/camera_record.h"

namespace sodam {

// Where the camera-log helper learns who used the camera: the system log on
// the Mac, the camera devices and the process table on Linux. The helper's
// command loop calls it on its thread; the stream reports from a thread of
// its own. Windows are seconds since 1970.
class CameraSources {
 public:
  using StreamHandler = std::function<void(const IndicatorUpdate&)>;

  virtual ~CameraSources() = default;

  // Processes that opened a camera in the window, the program itself left out.
  virtual std::vector<CameraRecord> clients(double from, double to) = 0;
  // Requests for the camera that the permission daemon logged in the window.
  virtual std::vector<CameraRecord> requests(double from, double to) = 0;
  // The last reading of who is shown as using the camera in the window.
  virtual std::optional<IndicatorUpdate> indicator(double from, double to) = 0;
  // Starts reporting each new reading; nothing when a stream is already
  // recorded, even one that ended by itself.
  virtual void startStream(StreamHandler handler) = 0;
  // Stops the stream and forgets it; its handler is not called afterwards.
  virtual void stopStream() = 0;
};

}  // namespace sodam
