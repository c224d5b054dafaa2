#pragma once

// Main thread: the listeners are given the main queue.

#include "camerawatch/camera_devices.h"

namespace sodam {

// The camera devices as CoreMediaIO lists them: the system object's device
// list and each device's "running somewhere" flag, with property listeners
// on the main queue that are never removed.
class MacCameraDevices final : public CameraDevices {
 public:
  std::optional<std::vector<DeviceId>> list() override;
  std::optional<bool> running(DeviceId device) override;
  void onListChange(std::function<void()> listener) override;
  void onRunningChange(DeviceId device, std::function<void()> listener) override;
};

// The workspace's lookup of applications and the file manager's names.
class MacAppCatalog final : public AppCatalog {
 public:
  std::string applicationPath(const std::string& identifier) override;
  std::optional<std::string> displayName(const std::string& bundlePath) override;
  std::vector<std::string> installFolders() override;
};

}  // namespace sodam
