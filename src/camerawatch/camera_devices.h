#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sodam {

// The machine's camera devices as the operating system lists them, and
// whether any process is using each. Listeners are called on the main
// thread and are never removed. Main thread.
class CameraDevices {
 public:
  using DeviceId = std::uint32_t;

  virtual ~CameraDevices() = default;
  // The devices now; nothing when the list can't be read.
  virtual std::optional<std::vector<DeviceId>> list() = 0;
  // Whether some process uses the device; nothing when it can't be read.
  virtual std::optional<bool> running(DeviceId device) = 0;
  virtual void onListChange(std::function<void()> listener) = 0;
  virtual void onRunningChange(DeviceId device, std::function<void()> listener) = 0;
};

// A machine without cameras to watch.
class NoCameraDevices final : public CameraDevices {
 public:
  std::optional<std::vector<DeviceId>> list() override { return std::vector<DeviceId>{}; }
  std::optional<bool> running(DeviceId) override { return std::nullopt; }
  void onListChange(std::function<void()>) override {}
  void onRunningChange(DeviceId, std::function<void()>) override {}
};

// Where the machine's applications live and what they are called: the
// workspace's lookup by identifier and the file manager's display names.
// Main thread.
class AppCatalog {
 public:
  virtual ~AppCatalog() = default;
  // The executable or bundle path of the application with the identifier;
  // empty when none is found.
  virtual std::string applicationPath(const std::string& identifier) = 0;
  // The name the file manager shows for a bundle path; nothing when unknown.
  virtual std::optional<std::string> displayName(const std::string& bundlePath) = 0;
  // The folders that installed programs live in, each ending in "/"; a
  // program elsewhere earns a warning.
  virtual std::vector<std::string> installFolders() = 0;
};

// The Mac's installed places for a user whose home directory is given.
std::vector<std::string> macInstallFolders(const std::string& home);

// A catalog that knows no application: identifiers that are paths stand for
// themselves and names come from the path.
class PlainAppCatalog : public AppCatalog {
 public:
  explicit PlainAppCatalog(std::vector<std::string> folders) : folders_(std::move(folders)) {}
  std::string applicationPath(const std::string& identifier) override;
  std::optional<std::string> displayName(const std::string&) override { return std::nullopt; }
  std::vector<std::string> installFolders() override { return folders_; }

 private:
  std::vector<std::string> folders_;
};

}  // namespace sodam
