#include "mac/display_height.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <vector>

namespace sodam {

namespace {

// Smaller reports come from displays that don't know their size.
constexpr double smallestTrustedHeightMm = 100;

std::vector<CGDirectDisplayID> onlineDisplays() {
  std::uint32_t count = 0;
  if (CGGetOnlineDisplayList(0, nullptr, &count) != kCGErrorSuccess || count == 0) return {};
  std::vector<CGDirectDisplayID> displays(count);
  if (CGGetOnlineDisplayList(count, displays.data(), &count) != kCGErrorSuccess) return {};
  displays.resize(count);
  return displays;
}

}  // namespace

std::optional<double> builtInDisplayHeightCm() {
  for (CGDirectDisplayID display : onlineDisplays()) {
    if (!CGDisplayIsBuiltin(display)) continue;
    double heightMm = CGDisplayScreenSize(display).height;
    if (heightMm > smallestTrustedHeightMm) return heightMm / 10;
    return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace sodam
