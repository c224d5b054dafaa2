#pragma once

// Its own thread follows the devices; the history is read from any thread
// under its lock, and the change handler is called on that thread.

#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/clock.h"

namespace sodam {

// Which processes hold the camera devices open, and since when: inotify
// tells that a watched device node was opened or closed, and a scan of
// /proc/*/fd finds the processes that hold it. It keeps the history of its
// own run only, and sees only the processes whose descriptors this user may
// read.
class CameraDeviceWatch {
 public:
  struct Holder {
    std::int64_t pid = 0;
    std::string path;  // the executable, or empty when it can't be read
    std::string name;  // the executable's file name, else the process's own name

    bool operator==(const Holder&) const = default;
  };
  // A process first seen holding a device.
  struct Opening {
    double time = 0;  // seconds since 1970
    Holder holder;
    std::string device;
  };
  // Who holds the devices after a change.
  struct Change {
    double time = 0;
    std::vector<Holder> holders;
  };

  // The devices as glob patterns, such as "/dev/video*".
  static constexpr const char* defaultDevices = "/dev/video*";
  // How much history is kept.
  static constexpr std::size_t keptEntries = 4096;

  CameraDeviceWatch(std::vector<std::string> patterns, const Clock& clock);
  ~CameraDeviceWatch();
  CameraDeviceWatch(const CameraDeviceWatch&) = delete;
  CameraDeviceWatch& operator=(const CameraDeviceWatch&) = delete;

  // Takes stock of who holds the devices now and starts following them;
  // false when the kernel's file notifications can't be had.
  bool start();
  // Stops following the devices; no change is reported after it returns.
  void stop();

  std::vector<Opening> openings(double from, double to) const;
  // The last change within the window.
  std::optional<Change> lastChange(double from, double to) const;
  // Called on the watch's thread after each change.
  void onChange(std::function<void(const Change&)> handler);

  // The devices found for the patterns.
  std::vector<std::string> devices() const;
  // Scans now, as an event would; for the first look and for tests.
  void rescan();

 private:
  struct Device {
    std::string path;
    dev_t fileSystem = 0;
    ino_t node = 0;
    dev_t special = 0;  // the device number of a character device
    bool character = false;
  };

  void findDevices();
  void run();
  bool readEvents();
  std::vector<std::pair<Holder, std::string>> scan() const;
  void record(const std::vector<std::pair<Holder, std::string>>& found);

  std::vector<std::string> patterns_;
  const Clock& clock_;
  int notify_ = -1;
  int wakeRead_ = -1;
  int wakeWrite_ = -1;
  std::thread thread_;

  mutable std::mutex mutex_;
  std::vector<Device> devices_;
  std::set<std::string> watchedFolders_;
  std::vector<Holder> holders_;
  std::deque<Opening> openings_;
  std::deque<Change> changes_;
  std::function<void(const Change&)> handler_;
};

// The device patterns a colon-separated setting names; the default
// "/dev/video*" when it is absent or empty.
std::vector<std::string> cameraDevicePatterns(const char* setting);

}  // namespace sodam
