#include "posture/baseline.h"

#include <cmath>

#include "posture/body3d.h"
#include "posture/spine_helpers.h"
#include "support/numeric.h"
#include "support/text.h"

namespace sodam {

namespace {
constexpr std::size_t fewestLearningFrames = 8;
constexpr double shoulderedShare = 0.6;
constexpr double eyeDistanceQuantile = 0.3;

// The shoulder fields, learned only when most frames show both shoulders.
void learnShoulders(Baseline& base, const std::vector<Measurement>& frames, double pitch) {
  std::vector<Measurement> shouldered;
  for (const auto& m : frames)
    if (m.shoulders()) shouldered.push_back(m);
  const auto count = static_cast<double>(shouldered.size());
  if (count < shoulderedShare * static_cast<double>(frames.size())) return;

  const auto widths = finiteValues(shouldered, [&](const Measurement& m) {
    return Body3D(m, std::nullopt, pitch).shoulderWidthCm;
  });
  if (static_cast<double>(widths.size()) >= shoulderedShare * count)
    base.shoulderWidthCm = median(widths);

  // The learned width now measures each frame's shoulder depth.
  std::vector<Body3D> bodies;
  bodies.reserve(shouldered.size());
  for (const auto& m : shouldered)
    bodies.emplace_back(m, base.shoulderWidthCm, pitch);

  std::vector<Body3D> placed;
  for (const auto& b : bodies)
    if (b.shoulder) placed.push_back(b);
  if (base.shoulderWidthCm) {
    std::vector<Body3D> measured;
    for (const auto& b : placed)
      if (b.torsoMeasured) measured.push_back(b);
    base.depthGap =
        median(finiteValues(measured, [](const Body3D& b) { return b.shoulder->z - b.eye.z; }));
    base.shoulderDepth =
        median(finiteValues(measured, [](const Body3D& b) { return b.shoulder->z; }));
  }
  base.neck = median(finiteValues(placed, [](const Body3D& b) { return b.eye.y - b.shoulder->y; }));
  base.lateral =
      median(finiteValues(placed, [](const Body3D& b) { return b.eye.x - b.shoulder->x; }));
  base.shoulderAngle =
      median(finiteValues(bodies, [](const Body3D& b) { return b.shoulderAngle; }));
  base.shoulderRay =
      median(finiteValues(shouldered, [](const Measurement& m) { return m.shoulderRay(); }));
}
}  // namespace

std::optional<Baseline> Baseline::learn(const std::vector<Measurement>& input,
                                        std::optional<double> lidDegrees, Date now) {
  const auto frames = usableFrames(input);
  if (frames.size() < fewestLearningFrames) return std::nullopt;
  const auto lid = finiteValue(lidDegrees);
  const double pitch = lid ? *lid - 90 : 0;

  std::vector<Body3D> bodies;
  bodies.reserve(frames.size());
  for (const auto& m : frames)
    bodies.emplace_back(m, std::nullopt, pitch);
  const auto eyeDistance = quantile(
      finiteValues(bodies, [](const Body3D& b) { return b.eyeDistance; }), eyeDistanceQuantile);
  const auto eyeHeight = median(finiteValues(bodies, [](const Body3D& b) { return b.eye.y; }));
  const auto eyeAngle = median(finiteValues(bodies, [](const Body3D& b) { return b.eyeAngle; }));
  const auto faceElevation =
      median(finiteValues(bodies, [](const Body3D& b) { return b.faceElevation; }));
  if (!eyeDistance || !eyeHeight || !eyeAngle || !faceElevation) return std::nullopt;

  Baseline base;
  base.eyeDistance = *eyeDistance;
  base.eyeHeight = *eyeHeight;
  base.eyeAngle = *eyeAngle;
  base.faceElevation = *faceElevation;
  base.faceRatio = median(finiteValues(frames, [](const Measurement& m) { return m.faceRatio; }));
  base.pitch = pitch;
  base.lid = lid;
  base.learnedAt = now;
  base.gaze = Gaze::learn(frames);
  base.frame = Frame::learn(frames);
  learnShoulders(base, frames, pitch);
  return base;
}

std::optional<Baseline::Gaze> Baseline::Gaze::learn(const std::vector<Measurement>& input) {
  const auto frames = usableFrames(input);
  const auto apertures = finiteValues(frames, [](const Measurement& m) { return m.aperture; });
  if (apertures.size() <= 5) return std::nullopt;
  // Eyes half shut can't be the reference of a look at the screen.
  const auto aperture = median(apertures);
  if (!aperture || !(*aperture > 0.08)) return std::nullopt;

  Gaze gaze;
  gaze.aperture = *aperture;
  gaze.pupilX = median(finiteValues(frames, [](const Measurement& m) -> std::optional<double> {
    if (const auto p = finitePoint(m.pupil)) return p->x;
    return std::nullopt;
  }));
  gaze.pupilY = median(finiteValues(frames, [](const Measurement& m) -> std::optional<double> {
    if (const auto p = finitePoint(m.pupil)) return p->y;
    return std::nullopt;
  }));
  gaze.turn =
      median(finiteValues(frames, [](const Measurement& m) { return m.turn(); })).value_or(0);
  return gaze;
}

std::optional<Baseline::Frame> Baseline::Frame::learn(const std::vector<Measurement>& input) {
  const auto frames = faceFrames(input);
  if (frames.size() < 4) return std::nullopt;
  const auto eyeRay = median(finiteValues(frames, [](const Measurement& m) { return m.eyeRay(); }));
  // Placed without any tilt: this distance must not depend on the camera's.
  const auto distance = median(finiteValues(
      frames, [](const Measurement& m) { return Body3D(m, std::nullopt, 0).eyeDistance; }));
  if (!eyeRay || !distance) return std::nullopt;

  Frame frame;
  frame.eyeRay = *eyeRay;
  frame.distance = *distance;
  const auto mostHave = [&](const std::vector<double>& values) -> std::optional<double> {
    if (values.size() * 2 < frames.size()) return std::nullopt;
    return median(values);
  };
  frame.neck = mostHave(finiteValues(frames, [](const Measurement& m) { return m.neckShape(); }));
  frame.torso = mostHave(finiteValues(frames, [](const Measurement& m) { return m.torsoShape(); }));
  return frame;
}

std::vector<std::string> Baseline::concerns(const std::vector<Measurement>& frames,
                                            const Baseline& base) {
  std::vector<std::string> out;
  if (std::abs(base.eyeAngle) > 7)
    out.push_back(
        fill("고개가 한쪽으로 {n}도 기울어 있어요", {{"n", unsignedWhole(base.eyeAngle)}}));
  if (base.shoulderAngle && std::abs(*base.shoulderAngle) > 6)
    out.push_back(
        fill("어깨가 한쪽으로 {n}도 기울어 있어요", {{"n", unsignedWhole(*base.shoulderAngle)}}));
  if (base.eyeDistance < 38)
    out.push_back(fill("화면에 너무 가까이(약 {n}센티) 앉아 있어요",
                       {{"n", unsignedWhole(base.eyeDistance)}}));
  if (base.eyeDistance > farthest) out.push_back("화면에서 너무 멀리 떨어져 있어요");

  const auto faces = faceFrames(frames);
  const auto across =
      median(finiteValues(faces, [](const Measurement& m) { return m.eyeMid().x / m.size.width; }));
  if (across && std::abs(*across - 0.5) > 0.2) out.push_back("몸이 화면 한쪽으로 치우쳐 있어요");
  const auto turn = median(finiteValues(faces, [](const Measurement& m) { return m.turn(); }));
  if (turn && std::abs(*turn) > 15) out.push_back("고개가 옆으로 돌아가 있어요");
  const auto pitch = median(finiteValues(faces, [](const Measurement& m) { return m.pitch; }));
  if (pitch && std::abs(*pitch) > 20) out.push_back("고개를 많이 숙이거나 젖히고 있어요");
  return out;
}

std::optional<Baseline> Baseline::moved(const Baseline& base,
                                        const std::vector<Measurement>& frames,
                                        std::optional<double> lid) {
  const auto faces = faceFrames(frames);
  if (faces.size() < fewestLearningFrames) return std::nullopt;
  // An adjustment is not a new learning: the date stays.
  auto fresh = learn(faces, lid, base.learnedAt);
  if (!fresh || !fresh->plausible()) return std::nullopt;
  if (!concerns(faces, *fresh).empty()) return std::nullopt;
  if (base.frame && fresh->frame &&
      !(std::abs(fresh->frame->distance / base.frame->distance - 1) < 0.35))
    return std::nullopt;

  if (!fresh->gaze) fresh->gaze = base.gaze;
  // The user's build does not change with the screen.
  if (base.frame && fresh->frame) {
    if (base.frame->neck) fresh->frame->neck = base.frame->neck;
    if (base.frame->torso) fresh->frame->torso = base.frame->torso;
  }
  return fresh;
}

}  // namespace sodam
