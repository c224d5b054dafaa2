#pragma once

#include <optional>
#include <vector>

#include "platform/lid_sensor.h"
#include "platform/power.h"
#include "sim/virtual_sitter.h"

namespace sodam {

// The machine of the simulation: its power, input and screen answers are
// whatever the scenario last set. Main thread only.
class ScriptedPowerSource final : public PowerSource {
 public:
  bool battery = false;
  std::optional<int> batteryPercent;  // none: no battery
  bool lowPower = false;
  double idle = 0;
  bool locked = false;

  bool providingBattery() const override { return battery; }
  std::vector<Capacity> capacities() const override;
  bool lowPowerMode() const override { return lowPower; }
  double idleSeconds() const override { return idle; }
  std::optional<DisplayAssertions> displayAssertions() const override {
    return DisplayAssertions{};
  }
  std::optional<std::int64_t> frontmostPid() const override { return std::nullopt; }
  std::optional<std::vector<Window>> windows() const override { return std::nullopt; }
  std::vector<Size> screenSizes() const override { return {Size{1512, 982}}; }
  std::optional<bool> sessionScreenLocked() const override { return locked; }
};

// The lid-angle sensor reporting the sitter's laptop, as the feature report
// the real sensor gives.
class SitterLidDevice final : public LidDevice {
 public:
  explicit SitterLidDevice(const VirtualSitter& sitter) : sitter_(sitter) {}
  bool missing = false;  // a machine without the sensor

  std::optional<std::size_t> featureReport(std::uint8_t reportId,
                                           std::span<std::uint8_t> buffer) override;

 private:
  const VirtualSitter& sitter_;
};

}  // namespace sodam
