#pragma once

// Called on the main thread at start, before anything is drawn; it has no
// callbacks.

#include <optional>
#include <string>

#include "platform/lockdown.h"

namespace sodam {

// The operating system's sandbox as the privacy lock's confinement. The
// sandbox call is looked up at run time, so a system without it leaves the
// process unconfined instead of failing to start.
class MacConfinement final : public Confinement {
 public:
  void ignoreBrokenPipe() override;
  std::optional<std::string> homePath() const override;
  std::optional<std::string> cachePath() const override;
  std::string bundleIdentifier() const override;
  bool apply(const std::string& profile) override;
};

}  // namespace sodam
