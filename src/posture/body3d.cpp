#include "posture/body3d.h"

#include <cmath>

#include "posture/spine_helpers.h"
#include "support/numeric.h"

namespace sodam {

namespace {
// Roll of the line through two points, folded into (-90°, 90°]: 0 when level
// whichever point comes first, positive when the image-right end is higher.
double lineRoll(Point a, Point b) {
  double angle = deg(std::atan2(a.y - b.y, a.x - b.x));
  if (angle > 90) {
    angle -= 180;
  } else if (angle <= -90) {
    angle += 180;
  }
  return angle;
}

// A camera-space point at normalised image position (nx, ny) and axis depth
// z, turned into the level frame of a camera tilted up by the angle whose
// sine and cosine are given.
Vec3 levelled(double nx, double ny, double z, double sinP, double cosP) {
  return {nx * z, sinP * z + cosP * (ny * z), cosP * z - sinP * (ny * z)};
}
}  // namespace

Body3D::Body3D(const Measurement& m, std::optional<double> knownShoulderWidthCm,
               double pitchDegrees) {
  const double f = Optics::focal(m.size);
  const double cx = m.size.width / 2;
  const double cy = m.size.height / 2;
  const double sinP = std::sin(rad(pitchDegrees));
  const double cosP = std::cos(rad(pitchDegrees));

  const double zc = f * Optics::ipdCm / m.frontalEyePixels();
  const Point mid = m.eyeMid();
  const double ex = (mid.x - cx) / f;
  const double ey = (mid.y - cy) / f;
  eye = levelled(ex, ey, zc, sinP, cosP);
  eyeDistance = zc * std::sqrt(1 + ex * ex + ey * ey);
  eyeAngle = lineRoll(m.eyeL, m.eyeR);
  faceElevation = deg(std::atan2(eye.y, eye.z));

  const auto pair = m.shoulders();
  if (!pair) return;
  const double sx = ((pair->first.x + pair->second.x) / 2 - cx) / f;
  const double sy = ((pair->first.y + pair->second.y) / 2 - cy) / f;
  // Without a torso width the shoulders are taken to stand in the eyes'
  // vertical plane.
  double depth = eye.z / (cosP - sinP * sy);
  if (const auto torso = positiveValue(m.torsoWidth)) {
    torsoMeasured = true;
    if (const auto known = positiveValue(knownShoulderWidthCm)) {
      depth = f * *known / *torso;
    } else {
      shoulderWidthCm = depth * *torso / f;
    }
  }
  shoulder = levelled(sx, sy, depth, sinP, cosP);
  shoulderAngle = lineRoll(pair->first, pair->second);
}

}  // namespace sodam
