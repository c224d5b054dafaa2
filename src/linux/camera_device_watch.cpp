#include "linux/camera_device_watch.h"

#include <dirent.h>
#include <fcntl.h>
#include <glob.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>

namespace sodam {

namespace {

constexpr std::uint32_t deviceEvents = IN_OPEN | IN_CLOSE_WRITE | IN_CLOSE_NOWRITE;
constexpr std::uint32_t folderEvents = IN_CREATE | IN_DELETE | IN_MOVED_TO | IN_MOVED_FROM;

std::optional<std::int64_t> processId(const char* name) {
  if (!*name) return std::nullopt;
  std::int64_t pid = 0;
  for (const char* c = name; *c; ++c) {
    if (*c < '0' || *c > '9' || pid > 1'000'000'000) return std::nullopt;
    pid = pid * 10 + (*c - '0');
  }
  return pid;
}

std::string readLink(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
  if (length <= 0) return {};
  return std::string(target, static_cast<std::size_t>(length));
}

std::string folderOf(const std::string& pattern) {
  const auto slash = pattern.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : pattern.substr(0, slash);
}

std::string lastComponent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

CameraDeviceWatch::Holder holderOf(std::int64_t pid) {
  const std::string base = "/proc/" + std::to_string(pid);
  CameraDeviceWatch::Holder holder{pid, readLink(base + "/exe"), {}};
  if (!holder.path.empty()) {
    holder.name = lastComponent(holder.path);
  } else {
    std::ifstream comm(base + "/comm");
    std::getline(comm, holder.name);
  }
  return holder;
}

void closeIfOpen(int& fd) {
  if (fd >= 0) ::close(fd);
  fd = -1;
}

}  // namespace

std::vector<std::string> cameraDevicePatterns(const char* setting) {
  std::vector<std::string> patterns;
  const std::string text = setting ? setting : "";
  std::size_t at = 0;
  while (at <= text.size()) {
    auto colon = text.find(':', at);
    if (colon == std::string::npos) colon = text.size();
    if (colon > at) patterns.push_back(text.substr(at, colon - at));
    at = colon + 1;
  }
  if (patterns.empty()) patterns.emplace_back(CameraDeviceWatch::defaultDevices);
  return patterns;
}

CameraDeviceWatch::CameraDeviceWatch(std::vector<std::string> patterns, const Clock& clock)
    : patterns_(std::move(patterns)), clock_(clock) {}

CameraDeviceWatch::~CameraDeviceWatch() {
  stop();
  closeIfOpen(notify_);
  closeIfOpen(wakeRead_);
  closeIfOpen(wakeWrite_);
}

bool CameraDeviceWatch::start() {
  notify_ = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  int wake[2];
  if (notify_ < 0 || ::pipe2(wake, O_CLOEXEC) != 0) {
    closeIfOpen(notify_);
    return false;
  }
  wakeRead_ = wake[0];
  wakeWrite_ = wake[1];
  findDevices();
  rescan();
  thread_ = std::thread([this] { run(); });
  return true;
}

void CameraDeviceWatch::stop() {
  if (!thread_.joinable()) return;
  const char wake = 1;
  while (::write(wakeWrite_, &wake, 1) < 0 && errno == EINTR) {
  }
  thread_.join();
}

void CameraDeviceWatch::findDevices() {
  std::vector<Device> found;
  for (const auto& pattern : patterns_) {
    const std::string folder = folderOf(pattern);
    if (notify_ >= 0 && !watchedFolders_.contains(folder) &&
        ::inotify_add_watch(notify_, folder.c_str(), folderEvents) >= 0) {
      watchedFolders_.insert(folder);
    }
    glob_t matches{};
    if (::glob(pattern.c_str(), 0, nullptr, &matches) == 0) {
      for (std::size_t i = 0; i < matches.gl_pathc; ++i) {
        struct stat info {};
        const std::string path = matches.gl_pathv[i];
        if (::stat(path.c_str(), &info) != 0) continue;
        if (notify_ >= 0) ::inotify_add_watch(notify_, path.c_str(), deviceEvents);
        found.push_back({path, info.st_dev, info.st_ino, info.st_rdev, S_ISCHR(info.st_mode) != 0});
      }
    }
    ::globfree(&matches);
  }
  std::lock_guard lock(mutex_);
  devices_ = std::move(found);
}

std::vector<std::string> CameraDeviceWatch::devices() const {
  std::lock_guard lock(mutex_);
  std::vector<std::string> paths;
  for (const auto& device : devices_)
    paths.push_back(device.path);
  return paths;
}

void CameraDeviceWatch::run() {
  while (true) {
    pollfd watched[2] = {{notify_, POLLIN, 0}, {wakeRead_, POLLIN, 0}};
    if (::poll(watched, 2, -1) < 0) {
      if (errno == EINTR) continue;
      return;
    }
    if (watched[1].revents != 0) return;
    if (readEvents()) findDevices();
    rescan();
  }
}

// Drains the notifications; true when a watched folder changed, so that the
// devices are to be looked for again.
bool CameraDeviceWatch::readEvents() {
  alignas(inotify_event) char buffer[16384];
  bool folderChanged = false;
  while (true) {
    const ssize_t length = ::read(notify_, buffer, sizeof buffer);
    if (length <= 0) break;
    for (char* at = buffer; at < buffer + length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      if (event->mask & folderEvents) folderChanged = true;
      at += sizeof(inotify_event) + event->len;
    }
  }
  return folderChanged;
}

std::vector<std::pair<CameraDeviceWatch::Holder, std::string>> CameraDeviceWatch::scan() const {
  std::vector<Device> devices;
  {
    std::lock_guard lock(mutex_);
    devices = devices_;
  }
  std::vector<std::pair<Holder, std::string>> found;
  if (devices.empty()) return found;
  const std::int64_t self = ::getpid();
  DIR* proc = ::opendir("/proc");
  if (!proc) return found;
  while (const dirent* entry = ::readdir(proc)) {
    const auto pid = processId(entry->d_name);
    if (!pid || *pid == self) continue;
    const std::string fds = "/proc/" + std::string(entry->d_name) + "/fd";
    DIR* folder = ::opendir(fds.c_str());
    if (!folder) continue;  // another user's process, or gone
    std::optional<std::string> held;
    while (const dirent* fd = ::readdir(folder)) {
      struct stat info {};
      if (fd->d_name[0] == '.' || ::stat((fds + "/" + fd->d_name).c_str(), &info) != 0) continue;
      for (const auto& device : devices) {
        const bool same = device.character
                              ? S_ISCHR(info.st_mode) && info.st_rdev == device.special
                              : info.st_dev == device.fileSystem && info.st_ino == device.node;
        if (same) held = device.path;
      }
      if (held) break;
    }
    ::closedir(folder);
    if (held) found.emplace_back(holderOf(*pid), *held);
  }
  ::closedir(proc);
  std::sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return a.first.pid < b.first.pid; });
  return found;
}

void CameraDeviceWatch::rescan() {
  record(scan());
}

void CameraDeviceWatch::record(const std::vector<std::pair<Holder, std::string>>& found) {
  const double now = clock_.now().unixSeconds();
  std::vector<Holder> holders;
  std::optional<Change> change;
  std::function<void(const Change&)> handler;
  {
    std::lock_guard lock(mutex_);
    for (const auto& [holder, device] : found) {
      holders.push_back(holder);
      const bool known = std::any_of(holders_.begin(), holders_.end(),
                                     [&](const Holder& h) { return h.pid == holder.pid; });
      if (!known) openings_.push_back({now, holder, device});
    }
    if (holders == holders_) return;
    holders_ = holders;
    changes_.push_back({now, holders});
    while (openings_.size() > keptEntries)
      openings_.pop_front();
    while (changes_.size() > keptEntries)
      changes_.pop_front();
    change = changes_.back();
    handler = handler_;
  }
  if (handler) handler(*change);
}

std::vector<CameraDeviceWatch::Opening> CameraDeviceWatch::openings(double from, double to) const {
  std::lock_guard lock(mutex_);
  std::vector<Opening> within;
  for (const auto& opening : openings_) {
    if (opening.time >= from && opening.time <= to) within.push_back(opening);
  }
  return within;
}

std::optional<CameraDeviceWatch::Change> CameraDeviceWatch::lastChange(double from,
                                                                       double to) const {
  std::lock_guard lock(mutex_);
  for (auto it = changes_.rbegin(); it != changes_.rend(); ++it) {
    if (it->time >= from && it->time <= to) return *it;
  }
  return std::nullopt;
}

void CameraDeviceWatch::onChange(std::function<void(const Change&)> handler) {
  std::lock_guard lock(mutex_);
  handler_ = std::move(handler);
}

}  // namespace sodam
