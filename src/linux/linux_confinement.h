#pragma once

// Applied once, on the main thread, before any other thread starts: the
// write rules cover only the calling thread and those it makes afterwards.

#include <filesystem>
#include <optional>
#include <string>

#include "platform/lockdown.h"

namespace sodam {

// The privacy lock on Linux, with the two effects of the Mac's sandbox: a
// seccomp filter refuses starting programs (execve, execveat: EPERM), and
// Landlock refuses writing anywhere but the data directory and /dev/null.
// Landlock can't refuse a file by its name's extension, so inside the data
// directory the rule against image and video files rests on the code. A
// kernel without either one leaves the process unconfined.
class LinuxConfinement final : public Confinement {
 public:
  explicit LinuxConfinement(std::filesystem::path dataDirectory)
      : dataDirectory_(std::move(dataDirectory)) {}

  void ignoreBrokenPipe() override;
  std::optional<std::string> homePath() const override { return std::nullopt; }
  std::optional<std::string> cachePath() const override { return std::nullopt; }
  std::string bundleIdentifier() const override { return {}; }
  bool apply(const std::string& profile) override;
  bool refusesImageFilesEverywhere() const override { return false; }

  // The kernel's Landlock version, 0 without it.
  static int landlockVersion();
  // Whether the kernel filters system calls.
  static bool seccompAvailable();

 private:
  std::filesystem::path dataDirectory_;
};

}  // namespace sodam
