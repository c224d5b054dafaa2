#pragma once

// Made on the main thread before any other thread starts.

#include <filesystem>

#include "linux/host_camera.h"
#include "linux/linux_confinement.h"

namespace sodam {

// Whether a command runs as the product, which confines itself after
// starting the camera-log helper, or inside another program such as a test,
// which must stay free to start programs.
enum class Confined { no, yes };

// What the product's own run on Linux brings before it starts: the real
// camera-log helper, started first, and the privacy lock that, once engaged,
// forbids starting programs and writing outside the data directory.
class ProductRun {
 public:
  explicit ProductRun(std::filesystem::path dataDirectory)
      : confinement_(std::move(dataDirectory)) {}

  Confinement& confinement() { return confinement_; }
  HostCamera& host() { return host_; }

 private:
  HostCamera host_;  // the helper is started here, before the lock
  LinuxConfinement confinement_;
};

}  // namespace sodam
