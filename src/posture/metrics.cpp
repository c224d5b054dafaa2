#include "posture/metrics.h"

#include <algorithm>
#include <cmath>

#include "posture/body3d.h"
#include "posture/face_pitch.h"
#include "posture/lid_geometry.h"
#include "posture/spine_helpers.h"
#include "support/numeric.h"

namespace sodam {

namespace {
// A shift of the shoulders' ray up to this is noise, not a tilted camera.
constexpr double shoulderRayDeadBand = 3;
// A head that came nearer and sank by at least this counts as forward head
// when the shoulders can't tell.
constexpr double sunkHeadCm = 1.5;
constexpr double shutEyesShare = 0.3;
constexpr double awayDown = 24;
constexpr double awayUp = -20;
constexpr double awaySide = 28;

struct CameraShift {
  double pitch = 0;  // the camera's tilt above the horizontal, degrees
  double lidZ = 0;   // how far the hinge moved the camera, cm
  double lidY = 0;
};

CameraShift cameraShift(const Measurement& m, const Baseline& base, std::optional<double> lid,
                        std::optional<double> displayHeightCm) {
  const auto learnedLid = finiteValue(base.lid);
  if (lid && learnedLid) {
    const double length = LidGeometry::length(displayHeightCm);
    return {*lid - 90, (std::cos(rad(*lid)) - std::cos(rad(*learnedLid))) * length,
            (std::sin(rad(*lid)) - std::sin(rad(*learnedLid))) * length};
  }
  // No hinge angle: a camera tilted since learning moves the shoulders
  // through the picture.
  CameraShift shift{base.pitch};
  const auto ray = m.shoulderRay();
  if (ray && base.shoulderRay) {
    const double d = *base.shoulderRay - *ray;
    shift.pitch += std::copysign(std::max(std::abs(d) - shoulderRayDeadBand, 0.0), d);
  }
  return shift;
}

void compareBody(Metrics& out, const Body3D& body, const Baseline& base, double lidY) {
  const Vec3& eye = body.eye;
  const bool shouldersComparable =
      body.shoulder && body.shoulderAngle && base.neck && base.lateral && base.shoulderAngle;
  if (shouldersComparable) {
    const Vec3& shoulder = *body.shoulder;
    out.neckDrop = *base.neck - (eye.y - shoulder.y);
    out.lean = (eye.x - shoulder.x) - *base.lateral;
    out.shoulderTilt = *body.shoulderAngle - *base.shoulderAngle;
    if (body.torsoMeasured && base.depthGap && base.shoulderDepth) {
      out.headForward = (shoulder.z - eye.z) - *base.depthGap;
      out.torsoForward = *base.shoulderDepth - shoulder.z;
    }
  } else {
    out.neckDrop = base.eyeHeight - (eye.y + lidY);
  }
  if (!out.headForward) {
    const bool nearerAndSunk = *out.neckDrop >= sunkHeadCm && out.closer > 0;
    out.headForward = nearerAndSunk ? std::optional(out.closer) : std::nullopt;
    out.torsoForward.reset();
  }
}

void compareGaze(Metrics& out, const Measurement& m, const Baseline::Gaze& gaze) {
  const double turn = out.turn - gaze.turn;
  const auto aperture = finiteValue(m.aperture);
  if (!aperture) {
    out.gazeSide = turn;
    out.lookingAway = std::abs(turn) > awaySide;
    return;
  }
  // Eyes all but shut say nothing about where they look.
  if (*aperture <= shutEyesShare * gaze.aperture) return;

  const auto pupil = finitePoint(m.pupil);
  double down = clamp((1 - *aperture / gaze.aperture) * 80, -25, 45);
  if (pupil && gaze.pupilY)
    down = 0.75 * down + 0.25 * clamp((*gaze.pupilY - pupil->y) * 90, -25, 45);
  // The head's own pitch adds to the eyes': eyes and head down together
  // reach the keyboard sooner.
  out.gazeDown = down + out.flexion.value_or(0);
  double side = turn;
  if (pupil && gaze.pupilX) side -= clamp((pupil->x - *gaze.pupilX) * 150, -40, 40);
  out.gazeSide = side;
  out.lookingAway = *out.gazeDown > awayDown || *out.gazeDown < awayUp || std::abs(side) > awaySide;
}

void dropNonFinite(std::optional<double>& value) {
  if (value && !std::isfinite(*value)) value.reset();
}

void dropNonFinite(double& value) {
  if (!std::isfinite(value)) value = 0;
}

// A baseline read from elsewhere can hold zeros that divide; what can't be
// computed is absent rather than NaN.
void dropNonFinite(Metrics& m) {
  for (auto* field : {&m.headForward, &m.torsoForward, &m.neckDrop, &m.flexion, &m.shoulderTilt,
                      &m.lean, &m.gazeDown, &m.gazeSide})
    dropNonFinite(*field);
  for (auto* field : {&m.headTilt, &m.closer, &m.viewDistance, &m.headX, &m.yaw, &m.turn})
    dropNonFinite(*field);
}
}  // namespace

Metrics::Metrics(const Measurement& m, const Baseline& base, std::optional<double> lidDegrees,
                 std::optional<double> displayHeightCm) {
  if (!m.usable()) return;
  const auto camera = cameraShift(m, base, finiteValue(lidDegrees), displayHeightCm);
  const Body3D body(m, base.shoulderWidthCm, camera.pitch);

  viewDistance = body.eyeDistance;
  closer = base.eyeDistance - (body.eyeDistance + camera.lidZ);
  turn = m.turn();
  yaw = deg(m.yaw);
  headX = body.eye.x;
  headTilt = body.eyeAngle - base.eyeAngle;
  const auto ratio = positiveValue(m.faceRatio);
  const auto learnedRatio = positiveValue(base.faceRatio);
  if (ratio && learnedRatio)
    flexion = FacePitch::degrees(*ratio, *learnedRatio) + (body.faceElevation - base.faceElevation);
  compareBody(*this, body, base, camera.lidY);
  if (!m.fromBody && base.gaze) compareGaze(*this, m, *base.gaze);
  dropNonFinite(*this);
}

std::optional<Metrics> Metrics::of(const Measurement& m, const Baseline& base,
                                   std::optional<double> lidDegrees,
                                   std::optional<double> displayHeightCm) {
  if (!m.usable()) return std::nullopt;
  return Metrics(m, base, lidDegrees, displayHeightCm);
}

}  // namespace sodam
