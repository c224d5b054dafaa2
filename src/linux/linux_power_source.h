#pragma once

#include <filesystem>

#include "platform/power.h"

namespace sodam {

// Power readings of a Linux machine from the kernel's power-supply class.
// Linux has no common answer for the rest: low power mode is off, idle time
// is 0, no display assertion, no frontmost application or window list, no
// screens and no session lock flag, so the rules read "present, not full
// screen, not locked". Main thread.
class LinuxPowerSource final : public PowerSource {
 public:
  explicit LinuxPowerSource(std::filesystem::path root = "/sys/class/power_supply")
      : root_(std::move(root)) {}

  // Not on battery while a mains or USB supply is online; else on battery
  // when a battery discharges, or when a battery and an offline external
  // supply are both listed.
  bool providingBattery() const override;
  // Each battery's charge in percent (max 100), in name order.
  std::vector<Capacity> capacities() const override;
  bool lowPowerMode() const override { return false; }
  double idleSeconds() const override { return 0; }
  std::optional<DisplayAssertions> displayAssertions() const override { return std::nullopt; }
  std::optional<std::int64_t> frontmostPid() const override { return std::nullopt; }
  std::optional<std::vector<Window>> windows() const override { return std::nullopt; }
  std::vector<Size> screenSizes() const override { return {}; }
  std::optional<bool> sessionScreenLocked() const override { return std::nullopt; }

 private:
  std::filesystem::path root_;
};

}  // namespace sodam
