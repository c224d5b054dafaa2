#include "focus/watch_harness.h"

#include "support/numeric.h"

namespace sodam::testing {

namespace {
// The face's length, eyes to chin, in eye distances.
constexpr double faceIpd = 1.8;

double faceLength(const Measurement& m) {
  return faceIpd * distance(m.eyeL, m.eyeR);
}
}  // namespace

Measurement seated(double eyeY, double ipd) {
  Measurement m;
  m.size = {1280, 720};
  m.eyeL = {640 - ipd / 2, eyeY};
  m.eyeR = {640 + ipd / 2, eyeY};
  m.chin = Point{640, eyeY - faceIpd * ipd};
  m.nose = Point{640, eyeY - 0.6 * ipd};
  m.shoulderL = Point{640 - 2.2 * ipd, eyeY - 3 * ipd};
  m.shoulderR = Point{640 + 2.2 * ipd, eyeY - 3 * ipd};
  m.aperture = 0.3;
  m.pupil = Point{0.5, 0.5};
  m.arms = Arms{};
  m.arms->wristL = Point{640 - 2.3 * ipd, eyeY - 6.5 * ipd};
  m.arms->wristR = Point{640 + 2.3 * ipd, eyeY - 6.5 * ipd};
  return m;
}

Measurement withPhone(Measurement m) {
  const double face = faceLength(m);
  const Point chin = *m.chin;
  m.arms->wristL = Point{chin.x - 0.2 * face, chin.y - 1.4 * face};
  m.arms->wristR = Point{chin.x + 0.2 * face, chin.y - 1.4 * face};
  m.pupil = Point{0.5, 0.3};
  return m;
}

Measurement withChinOnHand(Measurement m) {
  const Point chin = *m.chin;
  m.arms->wristR = Point{chin.x + 0.1 * faceLength(m), chin.y - 0.7 * faceLength(m)};
  return m;
}

Measurement withHandAtMouth(Measurement m) {
  const Point chin = *m.chin;
  m.arms->wristL = Point{chin.x + 0.1 * faceLength(m), chin.y + 0.1 * faceLength(m)};
  return m;
}

}  // namespace sodam::testing
