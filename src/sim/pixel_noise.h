#pragma once

#include <cstdint>
#include <optional>
#include <random>

namespace sodam {

// Gaussian jitter of detected positions, in pixels. The draws are made from
// the engine's raw output by Box-Muller, not by std::normal_distribution,
// whose sequence differs between standard libraries: a seed gives the same
// frames on every platform.
class PixelNoise {
 public:
  explicit PixelNoise(double sigmaPx = 0, std::uint32_t seed = 1);

  double sigmaPx() const { return sigmaPx_; }
  // One draw with standard deviation sigmaPx; exactly 0 when sigmaPx is 0.
  double next();

 private:
  double uniformOpen();

  double sigmaPx_;
  std::mt19937 engine_;
  std::optional<double> spare_;
};

}  // namespace sodam
