#include "linux/cloud_session.h"

#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "linux/linux_loopback_listener.h"
#include "linux/secret_service_keychain.h"

extern char** environ;

namespace sodam {

namespace {

CloudAuth::Ports ports(CloudSession& session, std::function<void(const std::string&)> openUrl) {
  return CloudAuth::Ports{session.http,
                          *session.keychain,
                          session.clock,
                          session.scheduler,
                          [] { return std::make_unique<LinuxLoopbackListener>(); },
                          std::move(openUrl),
                          {}};
}

}  // namespace

CloudSession::CloudSession(const std::filesystem::path& dataDirectory, CloudConfig config,
                           std::function<void(const std::string& url)> openUrl)
    : clock(SystemClock().now()),
      keychain(openLinuxKeychain(dataDirectory, keychainKind)),
      auth(std::move(config), ports(*this, std::move(openUrl))) {}

bool CloudSession::runUntil(const std::function<bool()>& done, double timeoutSeconds) {
  const Date end = SystemClock().now() + timeoutSeconds;
  for (;;) {
    scheduler.advanceTo(std::max(clock.now(), SystemClock().now()));
    if (done()) return true;
    if (SystemClock().now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

std::string CloudSession::keychainSummary() const {
  return keychainKind;
}

std::unique_ptr<Keychain> openLinuxKeychain(const std::filesystem::path& dataDirectory,
                                            std::string& kind) {
  if (auto service = SecretServiceKeychain::open()) {
    kind = "the desktop's secret service";
    return service;
  }
  auto file = std::make_unique<FileKeychain>(dataDirectory);
  kind = "a private file (mode 0600) at " + file->path().string();
  return file;
}

bool openInBrowser(const std::string& url) {
  pid_t child = 0;
  const char* argv[] = {"xdg-open", url.c_str(), nullptr};
  if (::posix_spawnp(&child, "xdg-open", nullptr, nullptr, const_cast<char**>(argv), environ) != 0)
    return false;
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace sodam
