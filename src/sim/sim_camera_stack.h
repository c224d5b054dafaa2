#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "camerawatch/camera_devices.h"
#include "camerawatch/camera_sources.h"
#include "camerawatch/log_helper.h"
#include "camerawatch/log_link.h"
#include "sim/sim_camera.h"
#include "support/clock.h"

namespace sodam {

// The simulated laptop's camera as the camera watch sees it: the device's
// running flag, the system log's records of who used it, and the
// camera-log helper answering its protocol in process. Other programs of
// the simulation take the camera when the scenario says so; the program's
// own camera is the simulated one. Everything runs in virtual time on the
// main thread: `poll` reports what changed, as the system would.
class SimCameraStack final : public CameraDevices, public CameraSources, public AppCatalog {
 public:
  static constexpr DeviceId builtIn = 1;
  // The user of the simulated laptop.
  static constexpr const char* home = "/Users/sitter";

  SimCameraStack(const SimCamera& camera, const Clock& clock);
  ~SimCameraStack() override;

  // Another program starts using the camera: a name, or the path of its
  // executable; a bare name is an application in /Applications.
  void otherStarts(const std::string& nameOrPath);
  void otherStops();
  // Tells the listeners and the stream what changed since the last look.
  void poll();

  // The link to the in-process helper.
  std::unique_ptr<LogLink> link(Scheduler& scheduler);

  std::optional<std::vector<DeviceId>> list() override { return std::vector<DeviceId>{builtIn}; }
  std::optional<bool> running(DeviceId device) override;
  void onListChange(std::function<void()>) override {}
  void onRunningChange(DeviceId device, std::function<void()> listener) override;

  std::vector<CameraRecord> clients(double from, double to) override;
  std::vector<CameraRecord> requests(double from, double to) override;
  std::optional<IndicatorUpdate> indicator(double from, double to) override;
  void startStream(StreamHandler handler) override;
  void stopStream() override { stream_ = nullptr; }

  std::string applicationPath(const std::string& identifier) override;
  std::optional<std::string> displayName(const std::string&) override { return std::nullopt; }
  std::vector<std::string> installFolders() override { return macInstallFolders(home); }

 private:
  class Channel;
  struct Program {
    std::string name;
    std::string identifier;
    std::string path;
    std::int64_t pid = 0;
    double since = 0;  // seconds since 1970
  };

  bool deviceRunning() const;
  std::vector<CameraUser> users() const;
  // Hands what the helper wrote to the link.
  void deliver();

  const SimCamera& camera_;
  const Clock& clock_;
  std::optional<Program> other_;
  std::vector<Program> opened_;  // every other program's run, for the records
  std::int64_t nextPid_ = 4242;
  std::vector<std::function<void()>> listeners_;
  bool lastRunning_ = false;
  std::vector<CameraUser> lastUsers_;
  std::vector<IndicatorUpdate> changes_;
  StreamHandler stream_;
  std::ostringstream written_;
  LogHelper helper_{*this, written_};
  Channel* channel_ = nullptr;
};

}  // namespace sodam
