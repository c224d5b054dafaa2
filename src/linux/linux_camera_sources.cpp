#include "linux/linux_camera_sources.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <iostream>

#include "camerawatch/log_helper.h"

namespace sodam {

LinuxCameraSources::LinuxCameraSources(CameraDeviceWatch& watch, HelperSelf self)
    : watch_(watch), self_(std::move(self)) {
  watch_.onChange([this](const CameraDeviceWatch::Change& change) {
    std::lock_guard lock(streamLock_);
    if (stream_) stream_(IndicatorUpdate{change.time, users(change.holders)});
  });
}

LinuxCameraSources::~LinuxCameraSources() {
  watch_.onChange(nullptr);
}

std::vector<CameraRecord> LinuxCameraSources::clients(double from, double to) {
  std::vector<LogEntry> entries;
  for (const auto& opening : watch_.openings(from, to)) {
    const auto& holder = opening.holder;
    entries.push_back(
        {opening.time, holder.pid, holder.path, holder.name, "opened " + opening.device});
  }
  return clientRecords(entries, self_);
}

std::optional<IndicatorUpdate> LinuxCameraSources::indicator(double from, double to) {
  const auto change = watch_.lastChange(from, to);
  if (!change) return std::nullopt;
  return IndicatorUpdate{change->time, users(change->holders)};
}

std::vector<CameraUser> LinuxCameraSources::users(
    const std::vector<CameraDeviceWatch::Holder>& holders) const {
  std::vector<CameraUser> users;
  for (const auto& holder : holders) {
    const bool own =
        holder.pid == self_.parentPid || (!self_.ownPath.empty() && holder.path == self_.ownPath);
    if (own) {
      users.push_back({holder.name, std::string(LogHelper::ownIdentifier)});
    } else {
      users.push_back({holder.name, holder.path.empty() ? holder.name : holder.path});
    }
  }
  return users;
}

void LinuxCameraSources::startStream(StreamHandler handler) {
  std::lock_guard lock(streamLock_);
  if (!stream_) stream_ = std::move(handler);
}

void LinuxCameraSources::stopStream() {
  std::lock_guard lock(streamLock_);
  stream_ = nullptr;
}

std::string linuxExecutablePath() {
  char path[PATH_MAX];
  const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

int runLinuxLogHelper() {
  SystemClock clock;
  // Where the cameras are is a setting, so a test can watch a file of its own.
  CameraDeviceWatch watch(cameraDevicePatterns(std::getenv("SODAMJARI_CAMERA_DEVICES")), clock);
  watch.start();
  // No folder holds only the system's programs here: every holder counts.
  LinuxCameraSources sources(watch, HelperSelf{::getppid(), linuxExecutablePath(), {}});
  LogHelper helper(sources, std::cout);
  const int status = helper.run(std::cin);
  watch.stop();
  return status;
}

}  // namespace sodam
