#pragma once

// Called on the main thread (it reads the workspace and the screens); it has
// no callbacks.

#include "platform/power.h"

namespace sodam {

// The machine's power, input, window and session answers from the power
// sources, the power manager, the window server and the workspace. Each call
// asks afresh; a failed call is a missing answer, never an error.
class MacPowerSource final : public PowerSource {
 public:
  bool providingBattery() const override;
  std::vector<Capacity> capacities() const override;
  bool lowPowerMode() const override;
  double idleSeconds() const override;
  std::optional<DisplayAssertions> displayAssertions() const override;
  std::optional<std::int64_t> frontmostPid() const override;
  std::optional<std::vector<Window>> windows() const override;
  std::vector<Size> screenSizes() const override;
  std::optional<bool> sessionScreenLocked() const override;
};

}  // namespace sodam
