#pragma once

#include <optional>

namespace sodam {

// The hinge-to-camera distance of the built-in display.
namespace LidGeometry {
inline constexpr double defaultDisplayHeightCm = 19.6;
// displayHeightCm: the physical height of the built-in screen, when the
// platform knows it.
double length(std::optional<double> displayHeightCm = std::nullopt);
}  // namespace LidGeometry

}  // namespace sodam
