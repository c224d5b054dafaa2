#include "sim/pixel_noise.h"

#include <cmath>
#include <numbers>

namespace sodam {

PixelNoise::PixelNoise(double sigmaPx, std::uint32_t seed) : sigmaPx_(sigmaPx), engine_(seed) {}

double PixelNoise::uniformOpen() {
  // Strictly inside (0, 1), so the logarithm below stays finite.
  return (static_cast<double>(engine_()) + 0.5) / 4294967296.0;
}

double PixelNoise::next() {
  if (sigmaPx_ == 0) return 0;
  if (spare_) {
    const double z = *spare_;
    spare_.reset();
    return z * sigmaPx_;
  }
  const double radius = std::sqrt(-2 * std::log(uniformOpen()));
  const double angle = 2 * std::numbers::pi * uniformOpen();
  spare_ = radius * std::sin(angle);
  return radius * std::cos(angle) * sigmaPx_;
}

}  // namespace sodam
