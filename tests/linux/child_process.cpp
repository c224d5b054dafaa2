#include "linux/child_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string_view>

namespace sodam::testing {

namespace {

constexpr uid_t nobody = 65534;

void writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void sendText(int fd, const std::string& text) {
  const std::uint64_t size = text.size();
  writeAll(fd, std::string_view(reinterpret_cast<const char*>(&size), sizeof size));
  writeAll(fd, text);
}

std::string readAll(int fd) {
  std::string all;
  char buffer[65536];
  ssize_t count = 0;
  while ((count = ::read(fd, buffer, sizeof buffer)) > 0)
    all.append(buffer, static_cast<std::size_t>(count));
  return all;
}

// The next length-prefixed text of the child's report.
std::string takeText(std::string_view& report) {
  std::uint64_t size = 0;
  if (report.size() < sizeof size) return {};
  report.copy(reinterpret_cast<char*>(&size), sizeof size);
  report.remove_prefix(sizeof size);
  std::string text(report.substr(0, size));
  report.remove_prefix(text.size());
  return text;
}

bool writeFile(const char* path, const std::string& text) {
  std::ofstream file(path);
  return static_cast<bool>(file << text << std::flush);
}

}  // namespace

ChildResult runInChild(const std::function<int(std::ostream& out, std::ostream& err)>& body) {
  int pipe[2];
  if (::pipe2(pipe, O_CLOEXEC) != 0) return {};
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::close(pipe[0]);
    std::ostringstream out, err;
    const int status = body(out, err);
    sendText(pipe[1], out.str());
    sendText(pipe[1], err.str());
    ::_exit(status);
  }
  ::close(pipe[1]);
  const std::string report = readAll(pipe[0]);
  ::close(pipe[0]);
  int raw = 0;
  ::waitpid(pid, &raw, 0);
  std::string_view rest = report;
  ChildResult result;
  result.out = takeText(rest);
  result.err = takeText(rest);
  result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
  return result;
}

bool dropRoot() {
  if (::geteuid() != 0) return true;
  if (::setgid(nobody) != 0 || ::setuid(nobody) != 0) return false;
  // A changed user makes the process undumpable, and a sanitizer's helper
  // threads then may not look at it.
  ::prctl(PR_SET_DUMPABLE, 1);
  return true;
}

bool mountSmallDisk(const std::string& dir, std::size_t bytes) {
  const uid_t uid = ::geteuid();
  const gid_t gid = ::getegid();
  if (uid != 0) {
    // An unprivileged user may mount in a user namespace of its own.
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    if (!writeFile("/proc/self/setgroups", "deny") ||
        !writeFile("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1") ||
        !writeFile("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1")) {
      return false;
    }
  } else if (::unshare(CLONE_NEWNS) != 0) {
    return false;
  }
  // Nothing mounted here may reach the namespace the test runs in.
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  const std::string options = "size=" + std::to_string(bytes) + ",mode=0777";
  return ::mount("tmpfs", dir.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

}  // namespace sodam::testing
