#pragma once

// The helper's command loop asks from its thread; the stream reports from
// the device watch's thread.

#include <mutex>

#include "camerawatch/camera_findings.h"
#include "camerawatch/camera_sources.h"
#include "linux/camera_device_watch.h"

namespace sodam {

// The camera-log helper's sources on Linux, which has no system log of
// camera use: the processes that opened a camera device are the camera
// stack's clients, and who holds a device now is what the indicator shows.
// There is no permission daemon, so there are no requests.
class LinuxCameraSources final : public CameraSources {
 public:
  LinuxCameraSources(CameraDeviceWatch& watch, HelperSelf self);
  ~LinuxCameraSources() override;

  std::vector<CameraRecord> clients(double from, double to) override;
  std::vector<CameraRecord> requests(double, double) override { return {}; }
  std::optional<IndicatorUpdate> indicator(double from, double to) override;
  void startStream(StreamHandler handler) override;
  void stopStream() override;

  // The users a change shows; the main process is named by the program's
  // own identifier, as the system's indicator names it.
  std::vector<CameraUser> users(const std::vector<CameraDeviceWatch::Holder>& holders) const;

 private:
  CameraDeviceWatch& watch_;
  HelperSelf self_;
  std::mutex streamLock_;
  StreamHandler stream_;
};

// The Linux helper's whole run: watch the devices the setting names, answer
// the protocol on standard input and output until the input ends. Its exit
// status.
int runLinuxLogHelper();

// This executable's path, from /proc; empty when it can't be read.
std::string linuxExecutablePath();

}  // namespace sodam
