#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/guard.h"
#include "support/scheduler.h"

namespace sodam {

// The operating system's side of the privacy lock: the facts the profile
// needs and the call that puts the process into its confinement.
class Confinement {
 public:
  virtual ~Confinement() = default;

  // A helper at the other end of a pipe may die at any time; its broken pipe
  // must not end this process.
  virtual void ignoreBrokenPipe() = 0;
  // The real path of the user's home directory; nothing when it can't be had.
  virtual std::optional<std::string> homePath() const = 0;
  // The real path of the per-user cache directory; nothing when it can't be had.
  virtual std::optional<std::string> cachePath() const = 0;
  // The main bundle's identifier, or the log helper's own one without a bundle.
  virtual std::string bundleIdentifier() const = 0;
  // Applies the profile for the rest of the process; false when it could not.
  // A confinement of another kind applies its own rules to the same two
  // effects and takes the profile only as the statement of them.
  virtual bool apply(const std::string& profile) = 0;
  // Whether the rule against image and video files holds wherever the
  // process may write; where it doesn't, it rests on the code there.
  virtual bool refusesImageFilesEverywhere() const { return true; }
};

// A platform without a confinement of its own: nothing is applied, so the
// promise that no picture leaves the process rests on the code alone.
class NoConfinement final : public Confinement {
 public:
  void ignoreBrokenPipe() override {}
  std::optional<std::string> homePath() const override { return std::nullopt; }
  std::optional<std::string> cachePath() const override { return std::nullopt; }
  std::string bundleIdentifier() const override { return {}; }
  bool apply(const std::string&) override { return false; }
};

// Keeps the promise that no picture of the user leaves the process by a rule
// of the operating system: right after start the process confines itself so
// that it can neither write image or video files nor start other programs.
// Hardening checks run beside it and may take the camera away. Main thread.
class Lockdown {
 public:
  static constexpr double checkIntervalSeconds = 60;
  // File names the profile forbids writing anywhere, as a regular expression.
  static constexpr std::string_view imageExtensionPattern =
      R"(\.(png|jpe?g|heic|heif|tiff?|bmp|gif|webp|mov|mp4|m4v|dng|raw)$)";

  // Enters the confinement once, at start, before anything is drawn. A
  // confinement that can't be entered is not fatal: the run goes on without.
  static std::unique_ptr<Lockdown> engage(Confinement& confinement, Scheduler& scheduler);

  // The profile, one rule a line: everything allowed but writing files and
  // starting programs, writes allowed back for the keychain and the app's own
  // cache when their paths (and, for the cache, the identifier) are known, and image and video
  // files refused last so that no allowed place can hold one.
  static std::string profile(const std::optional<std::string>& home,
                             const std::optional<std::string>& cache,
                             std::string_view bundleIdentifier);

  Lockdown(const Lockdown&) = delete;
  Lockdown& operator=(const Lockdown&) = delete;

  bool sandboxed() const { return sandboxed_; }
  // The line of the settings page.
  std::string summary() const { return summaryFor(sandboxed_, imagesEverywhere_); }
  // The same line for a process that is, or is not, confined: the command
  // line's, which never confines itself. `imagesEverywhere`: the confinement
  // refuses image and video files wherever the process may write.
  static std::string summaryFor(bool sandboxed, bool imagesEverywhere = true);

  // Told once, at the first threat a check finds.
  std::function<void(const Threat&)> onThreat;

  // Runs the checks at once and then every minute until one finds a threat;
  // after that the checks stop, since the camera stays revoked for the run.
  void watch(std::vector<Guard> checks);
  // The threat that revoked the camera, if any.
  const std::optional<Threat>& threat() const { return threat_; }

 private:
  Lockdown(Scheduler& scheduler, bool sandboxed, bool imagesEverywhere)
      : scheduler_(scheduler), sandboxed_(sandboxed), imagesEverywhere_(imagesEverywhere) {}
  void check();

  Scheduler& scheduler_;
  bool sandboxed_;
  bool imagesEverywhere_;
  std::vector<Guard> checks_;
  std::optional<Threat> threat_;
  Timer timer_;
};

}  // namespace sodam
