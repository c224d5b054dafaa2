#include "platform/power.h"

#include <cmath>

#include "support/text.h"

namespace sodam {

namespace {

constexpr int savingBelowPercent = 21;
constexpr double fullscreenSlackPoints = 2;

bool matches(const PowerSource::Window& window, const Size& screen) {
  return std::abs(*window.width - screen.width) < fullscreenSlackPoints &&
         std::abs(*window.height - screen.height) < fullscreenSlackPoints;
}

}  // namespace

bool Power::onBattery() const {
  return source_.providingBattery();
}

std::optional<int> Power::batteryLevel() const {
  for (const auto& capacity : source_.capacities()) {
    if (!capacity.current || !capacity.max) continue;
    if (*capacity.max == 0) return 0;
    return static_cast<int>(*capacity.current * 100 / *capacity.max);
  }
  return std::nullopt;
}

bool Power::lowPowerMode() const {
  return source_.lowPowerMode();
}

bool Power::saving() const {
  if (lowPowerMode()) return true;
  auto level = batteryLevel();
  return onBattery() && level && *level < savingBelowPercent;
}

double Power::checkInterval() const {
  if (saving()) return 180;
  return onBattery() ? 90 : 60;
}

std::string Power::label() const {
  if (lowPowerMode()) return "저전력 모드 · 배터리를 아끼는 중";
  if (!onBattery()) return "전원 연결";
  auto level = batteryLevel();
  std::string text = level ? format("배터리 %d%%", *level) : "배터리 ";
  if (saving()) text += " · 아끼는 중";
  return text;
}

double Power::idleSeconds() const {
  return source_.idleSeconds();
}

bool Power::displayHeldAwake() const {
  auto assertions = source_.displayAssertions();
  return assertions &&
         (assertions->preventUserIdleDisplaySleep >= 1 || assertions->noDisplaySleep >= 1);
}

bool Power::fullscreenFront() const {
  auto pid = source_.frontmostPid();
  if (!pid) return false;
  auto windows = source_.windows();
  if (!windows) return false;
  return fullscreen(*windows, *pid, source_.screenSizes());
}

bool Power::sessionLocked() const {
  return source_.sessionScreenLocked().value_or(false);
}

bool Power::fullscreen(const std::vector<PowerSource::Window>& windows, std::int64_t frontPid,
                       const std::vector<Size>& screens) {
  for (const auto& window : windows) {
    if (window.ownerPid != frontPid || window.layer != 0) continue;
    if (!window.width || !window.height) continue;
    for (const auto& screen : screens) {
      if (matches(window, screen)) return true;
    }
  }
  return false;
}

}  // namespace sodam
