// Costs of the posture spine on realistic frames: one frame's Metrics (run
// for every frame during an alert, up to 15 a second), a Reading of 60
// frames, and learning a Baseline from 30.

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "platform/sensitivity.h"
#include "posture/baseline.h"
#include "posture/measurement.h"
#include "posture/metrics.h"
#include "posture/reading.h"

namespace sodam {
namespace {

constexpr Size frameSize{1280, 720};

// A camera tilted up 12° (the lid at 102°) sees a point of the level world.
Point project(double x, double y, double z) {
  const double f = 640 / std::tan(32.5 * std::numbers::pi / 180);
  const double p = 12 * std::numbers::pi / 180;
  const double yc = y * std::cos(p) - z * std::sin(p);
  const double zc = y * std::sin(p) + z * std::cos(p);
  return {640 + f * x / zc, 360 + f * yc / zc};
}

// A sitter about 55 cm away, swaying a little from frame to frame: eyes
// 6.3 cm apart, shoulders 38 cm wide 20 cm below and 6 cm behind the eyes,
// the torso 33 cm wide 12 cm lower.
Measurement frame(int i) {
  const double sway = std::sin(i * 0.7);
  const double x = 1.5 * sway, y = 8 + 0.5 * std::cos(i * 1.3), z = 55 + 2 * sway;
  const double f = 640 / std::tan(32.5 * std::numbers::pi / 180);
  Measurement m;
  m.size = frameSize;
  m.eyeL = project(x - 3.15, y + 0.1 * sway, z);
  m.eyeR = project(x + 3.15, y - 0.1 * sway, z);
  m.yaw = 0.05 * sway;
  m.nose = project(x + 0.2 * sway, y - 3.5, z - 1.8);
  m.chin = project(x, y - 11, z - 0.5);
  m.faceRatio = 0.318 + 0.004 * sway;
  m.shoulderL = project(x - 19, y - 20, z + 6);
  m.shoulderR = project(x + 19, y - 20.3, z + 6);
  m.torsoWidth = f * 33 / (z + 6);
  m.torsoY = project(x, y - 32, z + 6).y;
  m.aperture = 0.28 + 0.01 * sway;
  m.pupil = Point{0.5 + 0.02 * sway, 0.52};
  m.pitch = 2 * sway;
  return m;
}

std::vector<Measurement> frames(int count) {
  std::vector<Measurement> out;
  for (int i = 0; i < count; ++i)
    out.push_back(frame(i));
  return out;
}

const Baseline& baseline() {
  static const Baseline base = *Baseline::learn(frames(30), 102, Date{});
  return base;
}

void metricsOfOneFrame(benchmark::State& state) {
  const auto& base = baseline();
  const auto m = frame(7);
  for (auto _ : state) {
    Metrics metrics(m, base, 104.0);
    benchmark::DoNotOptimize(metrics);
  }
}
BENCHMARK(metricsOfOneFrame);

void metricsOfOneFrameWithoutLid(benchmark::State& state) {
  const auto& base = baseline();
  const auto m = frame(7);
  for (auto _ : state) {
    Metrics metrics(m, base, std::nullopt);
    benchmark::DoNotOptimize(metrics);
  }
}
BENCHMARK(metricsOfOneFrameWithoutLid);

void readingOf60Frames(benchmark::State& state) {
  const auto& base = baseline();
  std::vector<Metrics> metrics;
  for (const auto& m : frames(60))
    metrics.emplace_back(m, base, 104.0);
  for (auto _ : state) {
    Reading reading(metrics, Sensitivity::normal);
    benchmark::DoNotOptimize(reading);
  }
}
BENCHMARK(readingOf60Frames);

void baselineLearnOf30Frames(benchmark::State& state) {
  const auto learning = frames(30);
  for (auto _ : state) {
    auto base = Baseline::learn(learning, 102, Date{});
    benchmark::DoNotOptimize(base);
  }
}
BENCHMARK(baselineLearnOf30Frames);

}  // namespace
}  // namespace sodam
