#include "posture/setup_shift.h"

#include <algorithm>
#include <cmath>

#include "posture/body3d.h"
#include "posture/lid_geometry.h"
#include "posture/spine_helpers.h"
#include "support/numeric.h"

namespace sodam {

namespace {
constexpr std::size_t fewestFrames = 4;
constexpr double shapeTolerance = 0.1;

// Whether the user's body looks the same in the picture as when learned: a
// moved camera keeps the shapes, a changed posture does not.
enum class Shape { unknown, same, different };

bool similar(double value, double learned) {
  return std::abs(value / learned - 1) <= shapeTolerance;
}

// The median of `values` when at least half of the frames gave one.
std::optional<double> mostFramesMedian(const std::vector<double>& values, std::size_t frames) {
  if (values.size() * 2 < frames) return std::nullopt;
  return median(values);
}

Shape bodyShape(const std::vector<Measurement>& frames, const Baseline& base) {
  if (!base.frame || !base.frame->neck) return Shape::unknown;
  const auto neck = mostFramesMedian(
      finiteValues(frames, [](const Measurement& m) { return m.neckShape(); }), frames.size());
  if (!neck) return Shape::unknown;
  if (!similar(*neck, *base.frame->neck)) return Shape::different;
  if (!base.frame->torso) return Shape::same;
  const auto torso = mostFramesMedian(
      finiteValues(frames, [](const Measurement& m) { return m.torsoShape(); }), frames.size());
  if (torso && !similar(*torso, *base.frame->torso)) return Shape::different;
  return Shape::same;
}

// What the hinge sensor says; nothing when it can't tell, and then the
// frames decide.
std::optional<SetupShift> lidShift(Shape shape, double lidChange) {
  if (lidChange < 6) return std::nullopt;
  switch (shape) {
    case Shape::unknown:
      return SetupShift{lidChange >= 10, lidChange < 15};
    case Shape::same:
      return SetupShift{lidChange >= 10, lidChange < 25};
    case Shape::different:
      if (lidChange >= 15) return SetupShift{true, false};
      return std::nullopt;
  }
  return std::nullopt;
}

struct FrameChange {
  double ray = 0;       // eye ray now minus learned, degrees
  double distance = 0;  // learned distance over the distance now
};

std::optional<SetupShift> sameShapeShift(const std::vector<Measurement>& frames,
                                         const Baseline& base, FrameChange change) {
  const double moved = std::abs(change.distance - 1);
  // The same body at another distance: the desk or the chair moved.
  if (moved >= 0.1) return SetupShift{moved >= 0.15, moved < 0.35};
  const double a = std::abs(change.ray);
  if (a < 4 || !base.shoulderRay) return std::nullopt;
  const auto shoulderRay =
      median(finiteValues(frames, [](const Measurement& m) { return m.shoulderRay(); }));
  if (!shoulderRay) return std::nullopt;
  // A tilted camera shifts the eyes and the shoulders by the same angle.
  const double mismatch = std::abs(change.ray + *base.shoulderRay - *shoulderRay);
  if (mismatch > std::max(0.3 * a, 1.5)) return std::nullopt;
  return SetupShift{a >= 7, a < 15};
}

std::optional<SetupShift> unknownShapeShift(const std::vector<Measurement>& frames,
                                            const Baseline& base, FrameChange change) {
  const double a = std::abs(change.ray);
  if (a < 6 || std::abs(change.distance - 1) > 0.06 || !base.faceRatio) return std::nullopt;
  const auto ratio = median(finiteValues(frames, [](const Measurement& m) { return m.faceRatio; }));
  if (!ratio || !(std::abs(*ratio / *base.faceRatio - 1) <= 0.05)) return std::nullopt;
  return SetupShift{a >= 9, a < 15};
}

std::optional<SetupShift> frameShift(const std::vector<Measurement>& frames, const Baseline& base,
                                     Shape shape) {
  if (!base.frame) return std::nullopt;
  const auto eyeRay = median(finiteValues(frames, [](const Measurement& m) { return m.eyeRay(); }));
  const auto distance = median(finiteValues(
      frames, [](const Measurement& m) { return Body3D(m, std::nullopt, 0).eyeDistance; }));
  if (!eyeRay || !distance) return std::nullopt;
  const FrameChange change{*eyeRay - base.frame->eyeRay, base.frame->distance / *distance};
  switch (shape) {
    case Shape::same:
      return sameShapeShift(frames, base, change);
    case Shape::unknown:
      return unknownShapeShift(frames, base, change);
    case Shape::different:
      return std::nullopt;
  }
  return std::nullopt;
}
}  // namespace

std::optional<SetupShift> SetupShift::check(const std::vector<Measurement>& input,
                                            const Baseline& base, std::optional<double> lid) {
  const auto frames = faceFrames(input);
  if (frames.size() < fewestFrames) return std::nullopt;
  const Shape shape = bodyShape(frames, base);
  const auto lidNow = finiteValue(lid);
  const auto lidThen = finiteValue(base.lid);
  if (lidNow && lidThen) {
    if (const auto shift = lidShift(shape, std::abs(*lidNow - *lidThen))) return shift;
  }
  return frameShift(frames, base, shape);
}

}  // namespace sodam
