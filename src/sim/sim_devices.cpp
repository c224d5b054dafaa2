#include "sim/sim_devices.h"

#include <cmath>

namespace sodam {

std::vector<PowerSource::Capacity> ScriptedPowerSource::capacities() const {
  if (!batteryPercent) return {};
  return {Capacity{*batteryPercent, 100}};
}

std::optional<std::size_t> SitterLidDevice::featureReport(std::uint8_t reportId,
                                                          std::span<std::uint8_t> buffer) {
  if (missing || reportId != 1 || buffer.size() < 3) return std::nullopt;
  const auto degrees = static_cast<std::uint16_t>(std::lround(sitter_.laptop.lidDeg));
  buffer[0] = reportId;
  buffer[1] = static_cast<std::uint8_t>(degrees & 0xff);
  buffer[2] = static_cast<std::uint8_t>(degrees >> 8);
  return 3;
}

}  // namespace sodam
